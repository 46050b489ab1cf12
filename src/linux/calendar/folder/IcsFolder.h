#pragma once

#include "linux/calendar/folder/IcsFileCache.h"
#include "platform/Calendars.h"

#include <optional>

namespace nimbarrow {

/// A folder of calendars: a file "Work.ics" is one, and so is a folder with such files in it, which may have
/// its colour in a file "color" and its name in a file "displayname". The user's own mail addresses may stand
/// in "addresses", one a line. Everything here reads or writes the disk.
class IcsFolder {
public:
    explicit IcsFolder(QString path);

    [[nodiscard]] const QString& path() const { return m_path; }

    /// Over all calendars; none when the folder is there and cannot be read. Reads only what is another than
    /// before. One thread at a time.
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(const QDateTime& start, const QDateTime& end);

    /// Writes the event into a file of its own in the first folder that can be written to; makes what is
    /// missing. Any thread.
    [[nodiscard]] Calendars::Created create(
        const QString& title, const QDateTime& start, const QDateTime& end) const;

private:
    struct Bounds;

    /// Null for what is no file of ours.
    [[nodiscard]] IcsFileCache::File read(
        const QFileInfo& info, const IcsFile::Reading& reading, IcsZones& zones, Bounds& bounds);
    [[nodiscard]] QString folderForNewEvents() const;

    const QString m_path;
    IcsFileCache m_files;
};

} // namespace nimbarrow
