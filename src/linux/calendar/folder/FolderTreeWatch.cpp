#include "linux/calendar/folder/FolderTreeWatch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr int mostFolders = 500;
constexpr std::uint32_t inFolder = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE | IN_DELETE
    | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t untilThere = IN_CREATE | IN_MOVED_TO | IN_ONLYDIR | IN_ONESHOT;

} // namespace

FolderTreeWatch::FolderTreeWatch(QString folder, std::chrono::milliseconds rest)
    : m_folder(std::move(folder))
    , m_inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , m_notifier(QSocketNotifier::Read)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(rest);
    connect(&m_rest, &QTimer::timeout, this, [this] {
        // Folders that are new, too.
        watchAll();
        Q_EMIT changed();
    });
    if (m_inotify < 0)
        return;
    connect(&m_notifier, &QSocketNotifier::activated, this, &FolderTreeWatch::drain);
    m_notifier.setSocket(m_inotify);
    m_notifier.setEnabled(true);
    watchAll();
}

FolderTreeWatch::~FolderTreeWatch()
{
    m_notifier.setEnabled(false);
    if (m_inotify >= 0)
        ::close(m_inotify);
}

void FolderTreeWatch::watchAll()
{
    const auto watch = [this](const QString& path, std::uint32_t what) {
        return ::inotify_add_watch(m_inotify, QFile::encodeName(path).constData(), what) >= 0;
    };
    if (!watch(m_folder, inFolder)) {
        watch(QFileInfo(m_folder).path(), untilThere);
        return;
    }
    int left = mostFolders;
    for (const auto& name : QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (--left < 0)
            return;
        watch(m_folder + u'/' + name, inFolder);
    }
}

void FolderTreeWatch::drain()
{
    // Which file it was does not matter: everything is read again.
    alignas(inotify_event) std::array<char, 4096> events {};
    while (::read(m_inotify, events.data(), events.size()) > 0) { }
    m_rest.start();
}

} // namespace nimbarrow
