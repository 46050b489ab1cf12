#pragma once

#include "platform/CalendarStore.h"

#include <optional>

namespace nimbarrow {

/// A folder of calendars: a file "Work.ics" is one, and so is a folder with such files in it. A folder may
/// have its colour in a file "color"; the user's own mail addresses may stand in "addresses", one a line.
/// Everything here reads or writes the disk.
class IcsFolder {
public:
    explicit IcsFolder(QString path);

    [[nodiscard]] const QString& path() const { return m_path; }

    /// Makes the folder where there is none. False when it is not there then, or not for us.
    [[nodiscard]] bool prepare() const;

    /// Over all calendars; none when the folder cannot be read.
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) const;

    /// Writes the event into a file of its own in the first folder that can be written to; makes one where
    /// there is none.
    [[nodiscard]] CalendarStore::Created create(
        const QString& title, const QDateTime& start, const QDateTime& end) const;

private:
    [[nodiscard]] QString folderForNewEvents() const;

    QString m_path;
};

} // namespace nimbarrow
