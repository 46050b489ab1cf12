#pragma once

#include "linux/applications/DesktopEntry.h"

#include <QDateTime>
#include <QHash>
#include <QStringList>
#include <QThreadPool>

#include <memory>
#include <mutex>

namespace nimbarrow {

/// The installed programs. Their files are read on a thread of its own, at once and again when a folder has
/// changed; a question asked meanwhile is answered from what was read before.
class DesktopEntries {
public:
    /// The programs of this session, named in the language of the session.
    DesktopEntries();
    DesktopEntries(QStringList dataFolders, QString locale);
    ~DesktopEntries();
    Q_DISABLE_COPY_MOVE(DesktopEntries)

    /// The program of that desktop file name (with or without its suffix).
    [[nodiscard]] std::optional<DesktopEntry> byId(const QString& id) const;

    /// The program whose windows have that class.
    [[nodiscard]] std::optional<DesktopEntry> byWindowClass(const QString& windowClass) const;

    /// Returns when everything asked for so far has been read.
    void waitUntilRead() const { m_reader.waitForDone(); }

private:
    struct Index;

    [[nodiscard]] std::shared_ptr<const Index> current() const;
    void read() const;

    QStringList m_folders;
    QString m_locale;
    mutable std::mutex m_mutex;
    mutable std::shared_ptr<const Index> m_index;
    mutable bool m_isReading = false;
    /// Last, so that it has ended before anything it uses goes.
    mutable QThreadPool m_reader;
};

} // namespace nimbarrow
