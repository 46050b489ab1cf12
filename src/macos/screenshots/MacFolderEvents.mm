#include "macos/screenshots/MacFolderEvents.h"

#include <QFile>
#include <QFileInfo>

#include <dispatch/dispatch.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbarrow {

namespace {

class KernelWatch final : public FolderEvents::Watch {
public:
    /// Takes the descriptor of a folder.
    KernelWatch(int folder, QByteArray path, std::function<void()> changed)
        : m_folder(folder)
        , m_path(std::move(path))
        , m_changed(std::make_shared<std::function<void()>>(std::move(changed)))
        , m_source(dispatch_source_create(DISPATCH_SOURCE_TYPE_VNODE, static_cast<uintptr_t>(folder),
              DISPATCH_VNODE_WRITE | DISPATCH_VNODE_RENAME | DISPATCH_VNODE_DELETE,
              dispatch_get_main_queue()))
    {
        if (!m_source) {
            ::close(folder);
            return;
        }
        const std::weak_ptr<std::function<void()>> call = m_changed;
        dispatch_source_set_event_handler(m_source, ^{
            // What is called may drop the watch, and one that was dropped has nothing more to say.
            if (const auto held = call.lock())
                (*held)();
        });
        // The system may still look at the descriptor until then.
        dispatch_source_set_cancel_handler(m_source, ^{ ::close(folder); });
        dispatch_activate(m_source);
    }

    ~KernelWatch() override
    {
        if (m_source)
            dispatch_source_cancel(m_source);
    }

    [[nodiscard]] bool isRunning() const { return m_source != nil; }

    // Entries that are written on in place are told of by nobody; the screenshot tool gives its files their
    // names when they are whole.
    [[nodiscard]] QStringList unfinished() const override { return {}; }

    [[nodiscard]] bool isCurrent() const override
    {
        struct stat watched { };
        struct stat named { };
        return ::fstat(m_folder, &watched) == 0 && ::stat(m_path.constData(), &named) == 0
            && watched.st_dev == named.st_dev && watched.st_ino == named.st_ino;
    }

private:
    int m_folder;
    QByteArray m_path;
    std::shared_ptr<std::function<void()>> m_changed;
    dispatch_source_t m_source;
};

} // namespace

std::unique_ptr<FolderEvents::Watch> MacFolderEvents::watch(
    const QString& folder, std::function<void()> changed)
{
    if (!QFileInfo(folder).isDir())
        return nullptr;
    // For events alone: a volume that is watched can still be ejected.
    const auto path = QFile::encodeName(folder);
    const int descriptor = ::open(path.constData(), O_EVTONLY | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    auto watch = std::make_unique<KernelWatch>(descriptor, path, std::move(changed));
    if (!watch->isRunning())
        return nullptr;
    return watch;
}

} // namespace nimbarrow
