#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace nimbarrow {

/// Where an occurrence of an event lies, as one text: what a calendar store of this system names events by,
/// and what opens them.
struct EventIdentifier {
    /// Who has the event.
    enum class Kind { DataServer, File };

    Kind kind = Kind::DataServer;
    /// The identifier of the calendar at the data server, or the path of the file.
    QString calendar;
    QString uid;
    /// Which occurrence of a series, as iCalendar writes the time; empty for an event by itself.
    QString recurrence;

    [[nodiscard]] QString text() const;

    /// None for what text() never gave.
    [[nodiscard]] static std::optional<EventIdentifier> parse(const QString& text);

    /// The identifier that an event link ("ical://ekevent/...") carries; none for any other link.
    [[nodiscard]] static std::optional<EventIdentifier> ofLink(const QUrl& link);

    friend bool operator==(const EventIdentifier&, const EventIdentifier&) = default;
};

} // namespace nimbarrow
