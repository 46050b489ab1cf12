#include "linux/screenshots/InotifyFolderEvents.h"

#include <QFile>
#include <QScopedPointer>
#include <QSet>
#include <QSocketNotifier>

#include <array>
#include <cstdint>
#include <cstring>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace nimbarrow {

namespace {

constexpr std::uint32_t told
    = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t changes = told | IN_Q_OVERFLOW;

class InotifyWatch final : public FolderEvents::Watch {
public:
    InotifyWatch(int events, QByteArray folder, std::function<void()> changed)
        : m_events(events)
        , m_folder(std::move(folder))
        , m_changed(std::move(changed))
        , m_notifier(new QSocketNotifier(events, QSocketNotifier::Read))
    {
        QObject::connect(
            m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { readEvents(); });
    }

    ~InotifyWatch() override
    {
        m_notifier->setEnabled(false);
        ::close(m_events);
    }

    [[nodiscard]] QStringList unfinished() const override { return m_unfinished.values(); }

private:
    void readEvents()
    {
        bool isChange = false;
        alignas(inotify_event) std::array<char, 4096> buffer {};
        for (;;) {
            const auto size = ::read(m_events, buffer.data(), buffer.size());
            if (size <= 0)
                break;
            for (std::size_t place = 0; place < static_cast<std::size_t>(size);) {
                inotify_event event {};
                std::memcpy(&event, buffer.data() + place, sizeof event);
                isChange |= take(event.mask, event.len > 0 ? buffer.data() + place + sizeof event : "");
                place += sizeof event + event.len;
            }
        }
        if (!isChange)
            return;
        // What is called may drop this object.
        const auto changed = m_changed;
        changed();
    }

    /// False when more of it will follow.
    bool take(std::uint32_t what, const char* name)
    {
        const auto text = QFile::decodeName(name);
        if ((what & IN_CREATE) != 0 && !isComplete(name)) {
            m_unfinished.insert(text);
            return false;
        }
        m_unfinished.remove(text);
        // What the kernel has left out may have been the end of any of them.
        if ((what & IN_Q_OVERFLOW) != 0)
            m_unfinished.clear();
        return (what & changes) != 0;
    }

    /// A new file is being written, and closing it will be told too. A link is there at once, and nothing
    /// else is told of it.
    [[nodiscard]] bool isComplete(const char* name) const
    {
        struct stat entry { };
        return ::lstat((m_folder + '/' + name).constData(), &entry) == 0
            && (!S_ISREG(entry.st_mode) || entry.st_nlink > 1);
    }

    int m_events;
    QByteArray m_folder;
    std::function<void()> m_changed;
    QSet<QString> m_unfinished;
    /// Later, because the watch may be dropped while its notifier speaks.
    std::unique_ptr<QSocketNotifier, QScopedPointerDeleteLater> m_notifier;
};

} // namespace

std::unique_ptr<FolderEvents::Watch> InotifyFolderEvents::watch(
    const QString& folder, std::function<void()> changed)
{
    const int events = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (events < 0)
        return {};
    auto path = QFile::encodeName(folder);
    if (::inotify_add_watch(events, path.constData(), told | IN_ONLYDIR) < 0) {
        ::close(events);
        return {};
    }
    return std::make_unique<InotifyWatch>(events, std::move(path), std::move(changed));
}

} // namespace nimbarrow
