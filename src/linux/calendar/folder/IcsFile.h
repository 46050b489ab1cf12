#pragma once

#include "linux/calendar/folder/IcsEvent.h"
#include "linux/calendar/folder/IcsZones.h"

#include <QByteArrayView>
#include <QColor>
#include <QSet>

#include <optional>
#include <vector>

namespace nimbarrow {

/// What one iCalendar text says of a time. The text may hold anything: time and memory are bounded.
struct IcsFile {
    /// What the same text is read by.
    struct Reading {
        QDateTime start;
        QDateTime end;
        /// The user's mail addresses in lower case.
        QSet<QString> ownAddresses;

        friend bool operator==(const Reading&, const Reading&) = default;
    };

    /// Of what lies outside the time nothing is kept. `path` is where the text is from.
    [[nodiscard]] static IcsFile parse(
        QByteArrayView text, const QString& path, const Reading& reading, IcsZones& zones);

    /// A colour as calendars write it: "#FF2968", "#FF2968FF" with the opacity behind, or a name.
    [[nodiscard]] static std::optional<QColor> parseColor(const QByteArray& text);

    std::vector<IcsEvent> events;
    std::optional<QColor> color;
    /// What the calendar calls itself; empty where it does not.
    QString name;
    /// About what it takes in memory, in bytes.
    qsizetype cost = sizeof(IcsFile);
};

} // namespace nimbarrow
