#include "linux/calendar/FolderTreeWatch.h"

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
constexpr std::uint32_t untilThere = IN_CREATE | IN_MOVED_TO | IN_ONLYDIR;

} // namespace

FolderTreeWatch::FolderTreeWatch(QString folder, std::chrono::milliseconds rest)
    : m_folder(std::move(folder))
    , m_inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , m_notifier(QSocketNotifier::Read)
    , m_looking(std::make_unique<ThreadedQueue>(u"calendar-watch"_s, 1))
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(rest);
    connect(&m_rest, &QTimer::timeout, this, &FolderTreeWatch::rewatch);
    rewatch();
    if (m_inotify < 0)
        return;
    connect(&m_notifier, &QSocketNotifier::activated, this, &FolderTreeWatch::drain);
    m_notifier.setSocket(m_inotify);
    m_notifier.setEnabled(true);
}

FolderTreeWatch::~FolderTreeWatch()
{
    m_notifier.setEnabled(false);
    m_looking.reset();
    if (m_inotify >= 0)
        ::close(m_inotify);
}

void FolderTreeWatch::rewatch()
{
    // Folders that are new, too.
    m_looking->run([this] { watchAll(); }, this, [this] { Q_EMIT changed(); });
}

void FolderTreeWatch::watchAll()
{
    const auto watch = [this](const QString& path, std::uint32_t what) {
        return ::inotify_add_watch(m_inotify, QFile::encodeName(path).constData(), what);
    };
    if (watch(m_folder, inFolder) < 0) {
        m_parent = watch(QFileInfo(m_folder).path(), untilThere);
        return;
    }
    if (const int parent = m_parent.exchange(-1); parent >= 0)
        ::inotify_rm_watch(m_inotify, parent);
    int left = mostFolders;
    for (const auto& name : QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (--left < 0)
            return;
        watch(m_folder + u'/' + name, inFolder);
    }
}

void FolderTreeWatch::drain()
{
    // Which file it was does not matter: everything is looked at again. Only beside the folder that is to
    // come much else may happen.
    const auto name = QFile::encodeName(QFileInfo(m_folder).fileName());
    bool concerns = false;
    alignas(inotify_event) std::array<char, 4096> events {};
    for (;;) {
        const auto size = ::read(m_inotify, events.data(), events.size());
        if (size <= 0)
            break;
        for (auto at = ssize_t { 0 }; at < size;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(events.data() + at);
            at += ssize_t(sizeof(inotify_event) + event->len);
            concerns = concerns || event->wd != m_parent
                || (event->len > 0 && name == static_cast<const char*>(event->name));
        }
    }
    if (concerns)
        m_rest.start();
}

} // namespace nimbarrow
