#pragma once

#include "platform/CalendarStore.h"

namespace nimbarrow {

/// What the system tells of one occurrence of an event.
struct EventFacts {
    struct Participant {
        bool isCurrentUser = false;
        /// EKParticipantStatus.
        int status = 0;
    };
    /// In sRGB; a value outside 0 to 1 is a colour that only wide screens show.
    struct Color {
        double red = 0;
        double green = 0;
        double blue = 0;
    };

    /// Every occurrence of a series has the same one.
    QString identifier;
    QString title;
    QDateTime start;
    /// Of an all-day event, the last second of its last day.
    QDateTime end;
    bool isAllDay = false;
    std::optional<Color> color;
    QString location;
    QUrl url;
    QString notes;
    /// EKEventStatus.
    int status = 0;
    QList<Participant> participants;
    bool hasRecurrenceRules = false;
    bool isDetached = false;

    /// None for what has no beginning or end.
    [[nodiscard]] std::optional<CalendarEvent> event() const;
};

/// `status` is an EKAuthorizationStatus. What is not known grants nothing.
[[nodiscard]] CalendarStore::Authorization calendarAuthorization(int status);

} // namespace nimbarrow
