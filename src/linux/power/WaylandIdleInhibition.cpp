#include "linux/power/WaylandIdleInhibition.h"

#include "idle-inhibit-client.h"
#include "linux/display/WaylandRegistry.h"
#include "linux/display/WaylandResources.h"

#include <QEvent>
#include <QPlatformSurfaceEvent>
#include <QWindow>

namespace nimbarrow::wayland {

namespace {

class Inhibition final : public QObject, public Port {
public:
    Inhibition(zwp_idle_inhibit_manager_v1* manager, QWindow& window)
        : m_manager(manager)
    {
        window.installEventFilter(this);
        if (window.isExposed())
            begin(window);
    }

    ~Inhibition() override
    {
        end();
        zwp_idle_inhibit_manager_v1_destroy(m_manager);
        wl_display_flush(qtDisplay());
    }
    Q_DISABLE_COPY_MOVE(Inhibition)

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed())
            begin(static_cast<QWindow&>(*watched));
        else if (event->type() == QEvent::PlatformSurface
            && static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType()
                == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            end();
        return false;
    }

private:
    void begin(QWindow& window)
    {
        if (m_inhibitor)
            return;
        m_inhibitor = zwp_idle_inhibit_manager_v1_create_inhibitor(m_manager, surface(window));
        wl_display_flush(qtDisplay());
    }

    void end()
    {
        if (m_inhibitor)
            zwp_idle_inhibitor_v1_destroy(m_inhibitor);
        m_inhibitor = nullptr;
    }

    zwp_idle_inhibit_manager_v1* m_manager;
    zwp_idle_inhibitor_v1* m_inhibitor = nullptr;
};

} // namespace

std::unique_ptr<Port> inhibitIdle(QWindow& window)
{
    auto* const manager = WaylandRegistry(qtDisplay())
                              .bind<zwp_idle_inhibit_manager_v1>(zwp_idle_inhibit_manager_v1_interface, 1);
    return manager ? std::make_unique<Inhibition>(manager, window) : nullptr;
}

} // namespace nimbarrow::wayland
