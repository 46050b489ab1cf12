#pragma once

#include <QByteArray>
#include <QHash>

#include <wayland-client-core.h>

struct wl_registry;

namespace nimbarrow {

/// What a compositor offers, as it stood when asked. On the thread that reads the connection's events; the
/// connection outlives it.
class WaylandRegistry {
public:
    /// Waits for one answer of the compositor. The proxies that bind() makes speak through `queue`, which the
    /// caller keeps, or through the connection's own without one.
    explicit WaylandRegistry(wl_display* display, wl_event_queue* queue = nullptr);
    ~WaylandRegistry();
    Q_DISABLE_COPY_MOVE(WaylandRegistry)

    /// The highest version that the compositor speaks, 0 where it does not know the interface.
    quint32 version(const char* interface) const;

    /// A proxy of the caller's, null where the interface is not offered.
    template <typename Proxy>
    Proxy* bind(const wl_interface& interface, quint32 newestVersion) const
    {
        return static_cast<Proxy*>(bound(interface, newestVersion));
    }

private:
    struct Global {
        quint32 name = 0;
        quint32 version = 0;
    };

    void* bound(const wl_interface& interface, quint32 newestVersion) const;

    wl_registry* m_registry = nullptr;
    /// By the interface's name. Of several (outputs, seats) the first.
    QHash<QByteArray, Global> m_globals;
};

} // namespace nimbarrow
