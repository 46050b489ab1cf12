#include "platform/linux/InotifyFolderEvents.h"

#include <QFile>
#include <QScopedPointer>
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

constexpr std::uint32_t finished = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF
    | IN_MOVE_SELF | IN_Q_OVERFLOW;

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
                const char* const name = buffer.data() + place + sizeof event;
                isChange = isChange || (event.mask & finished) != 0
                    || ((event.mask & IN_CREATE) != 0 && event.len > 0 && isComplete(name));
                place += sizeof event + event.len;
            }
        }
        if (!isChange)
            return;
        // What is called may drop this object.
        const auto changed = m_changed;
        changed();
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
    const auto told = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE | IN_DELETE_SELF
        | IN_MOVE_SELF | IN_ONLYDIR;
    if (::inotify_add_watch(events, path.constData(), told) < 0) {
        ::close(events);
        return {};
    }
    return std::make_unique<InotifyWatch>(events, std::move(path), std::move(changed));
}

} // namespace nimbarrow
