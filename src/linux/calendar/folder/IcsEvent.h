#pragma once

#include "linux/calendar/folder/IcsTime.h"
#include "linux/calendar/folder/IcsZones.h"
#include "platform/Calendars.h"

#include <QList>
#include <QSet>

#include <optional>
#include <vector>

namespace nimbarrow {

/// A VEVENT as it stands in its file: an event by itself, a series, or one occurrence of a series that was
/// changed.
struct IcsEvent {
    /// How long it lasts: days by the clock on the wall, then seconds by the clock in the hand.
    struct Length {
        qint64 days = 0;
        qint64 seconds = 0;
    };

    /// From when to when it is.
    struct Span {
        IcsTime start;
        /// Neither where it lasts no time, or its day.
        std::optional<IcsTime> end;
        std::optional<Length> length;
    };

    QString path;
    QString uid;
    int sequence = 0;
    Span span;
    std::optional<IcsTime> recurrenceId;
    /// Stands for all occurrences from that one on.
    bool isOnward = false;
    std::vector<icalrecurrencetype> rules;
    /// Some with a length of their own.
    QList<Span> added;
    QList<IcsTime> leftOut;
    /// All that does not depend on the time.
    CalendarEvent details;

    /// None for what is no event.
    [[nodiscard]] static std::optional<IcsEvent> parse(
        const QByteArray& component, const QSet<QString>& ownAddresses, const IcsZones& zones);

    [[nodiscard]] bool recurs() const { return !rules.empty() || !added.isEmpty(); }
};

} // namespace nimbarrow
