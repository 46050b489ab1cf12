#pragma once

#include "platform/CalendarStore.h"
#include "linux/calendar/folder/IcsTime.h"

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

    QString path;
    QString uid;
    int sequence = 0;
    IcsTime start;
    std::optional<IcsTime> end;
    std::optional<Length> length;
    std::optional<IcsTime> recurrenceId;
    std::vector<icalrecurrencetype> rules;
    QList<IcsTime> added;
    QList<IcsTime> leftOut;
    /// All that does not depend on the time.
    CalendarEvent details;

    /// None for what is no event.
    [[nodiscard]] static std::optional<IcsEvent> parse(
        const QByteArray& component, const QSet<QString>& ownAddresses);

    [[nodiscard]] bool recurs() const { return !rules.empty() || !added.isEmpty(); }
};

} // namespace nimbarrow
