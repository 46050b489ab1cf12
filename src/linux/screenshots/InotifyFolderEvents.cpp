#include "linux/screenshots/InotifyFolderEvents.h"

#include <QCoreApplication>
#include <QFile>
#include <QScopedPointer>
#include <QSet>
#include <QSocketNotifier>

#include <array>
#include <cstdint>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace nimbarrow {

namespace {

constexpr std::uint32_t changes = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr std::uint32_t gone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT;

class InotifyWatch final : public FolderEvents::Watch {
public:
    InotifyWatch(int events, std::function<void()> changed)
        : m_events(events)
        , m_changed(std::move(changed))
        , m_notifier(new QSocketNotifier(events, QSocketNotifier::Read, QCoreApplication::instance()))
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
    [[nodiscard]] bool isCurrent() const override { return m_current; }

private:
    void readEvents()
    {
        bool isChange = false;
        QSet<QString> made;
        alignas(inotify_event) std::array<char, 4096> buffer {};
        for (;;) {
            const auto size = ::read(m_events, buffer.data(), buffer.size());
            if (size <= 0)
                break;
            for (std::size_t place = 0; place < static_cast<std::size_t>(size);) {
                inotify_event event {};
                std::memcpy(&event, buffer.data() + place, sizeof event);
                const auto name
                    = QFile::decodeName(event.len > 0 ? buffer.data() + place + sizeof event : "");
                isChange |= take(event.mask, name, made);
                place += sizeof event + event.len;
            }
        }
        if (!isChange && made.isEmpty())
            return;
        // What is called may drop this object.
        const auto changed = m_changed;
        changed();
    }

    /// True for a change that is complete. `made` are the entries that have come and may be.
    bool take(std::uint32_t what, const QString& name, QSet<QString>& made)
    {
        // Who makes a file opens it in the same breath, and closing it will be told too. A file that gets its
        // first name when it is written, a link and a folder are complete as they come, and nothing else is
        // told of them.
        if ((what & IN_OPEN) != 0 && made.remove(name))
            m_unfinished.insert(name);
        if ((what & IN_CREATE) != 0) {
            made.insert(name);
            return false;
        }
        if ((what & changes) != 0)
            m_unfinished.remove(name);
        // What the kernel has left out may have been the end of any of them.
        if ((what & IN_Q_OVERFLOW) != 0)
            m_unfinished.clear();
        m_current = m_current && (what & gone) == 0;
        return (what & (changes | gone | IN_Q_OVERFLOW)) != 0;
    }

    int m_events;
    bool m_current = true;
    std::function<void()> m_changed;
    QSet<QString> m_unfinished;
    /// Later, because the watch may be dropped while its notifier speaks; with the application where no loop
    /// follows any more.
    std::unique_ptr<QSocketNotifier, QScopedPointerDeleteLater> m_notifier;
};

} // namespace

std::unique_ptr<FolderEvents::Watch> InotifyFolderEvents::watch(
    const QString& folder, std::function<void()> changed)
{
    const int events = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (events < 0)
        return {};
    if (::inotify_add_watch(
            events, QFile::encodeName(folder).constData(), changes | gone | IN_OPEN | IN_ONLYDIR)
        < 0) {
        ::close(events);
        return {};
    }
    return std::make_unique<InotifyWatch>(events, std::move(changed));
}

} // namespace nimbarrow
