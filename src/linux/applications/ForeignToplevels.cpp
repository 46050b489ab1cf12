#include "linux/applications/ForeignToplevels.h"

#include "linux/applications/DesktopEntries.h"
#include "linux/applications/Processes.h"
#include "linux/display/WaylandRegistry.h"

#include <algorithm>
#include <foreign-toplevel-client.h>

namespace nimbarrow {

struct ForeignToplevels::Toplevel {
    ForeignToplevels& owner;
    zwlr_foreign_toplevel_handle_v1* handle;
    quint64 number;
    QString name;
    bool isInFront = false;
    /// What is told of a window counts once all of it has been told.
    QString newName {};
    bool willBeInFront = false;
};

struct ForeignToplevels::Events {
    static Toplevel& toplevel(void* data) { return *static_cast<Toplevel*>(data); }

    static void added(void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle)
    {
        static constexpr zwlr_foreign_toplevel_handle_v1_listener listener {
            [](void*, auto*, const char*) {},
            [](void* window, auto*, const char* name) { toplevel(window).newName = QString::fromUtf8(name); },
            [](void*, auto*, wl_output*) {},
            [](void*, auto*, wl_output*) {},
            [](void* window, auto*, wl_array* states) {
                const auto* const first = static_cast<const uint32_t*>(states->data);
                toplevel(window).willBeInFront
                    = std::find(first, first + states->size / sizeof(uint32_t),
                          uint32_t(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED))
                    != first + states->size / sizeof(uint32_t);
            },
            [](void* window, auto*) { changed(toplevel(window)); },
            [](void* window, auto*) { closed(toplevel(window)); },
            [](void*, auto*, zwlr_foreign_toplevel_handle_v1*) {},
        };
        auto& self = *static_cast<ForeignToplevels*>(data);
        auto* const window = new Toplevel { self, handle, ++self.m_lastNumber, {} };
        self.m_toplevels << window;
        zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, window);
    }

    static void changed(Toplevel& window)
    {
        window.name = window.newName;
        if (window.willBeInFront && !window.isInFront) {
            auto& all = window.owner.m_toplevels;
            all.move(all.indexOf(&window), 0);
        }
        window.isInFront = window.willBeInFront;
    }

    static void closed(Toplevel& window)
    {
        window.owner.m_toplevels.removeOne(&window);
        zwlr_foreign_toplevel_handle_v1_destroy(window.handle);
        delete &window;
    }

    // The compositor lists nothing any more.
    static void finished(void* data, zwlr_foreign_toplevel_manager_v1* manager)
    {
        zwlr_foreign_toplevel_manager_v1_destroy(manager);
        static_cast<ForeignToplevels*>(data)->m_manager = nullptr;
    }
};

ForeignToplevels::ForeignToplevels(wl_display* display)
    : ForeignToplevels(display, std::make_unique<DesktopEntries>())
{
}

ForeignToplevels::ForeignToplevels(wl_display* display, std::unique_ptr<DesktopEntries> entries)
    : DesktopApplications(std::move(entries))
{
    static constexpr zwlr_foreign_toplevel_manager_v1_listener listener { &Events::added, &Events::finished };
    const WaylandRegistry registry(display);
    m_seat = registry.bind<wl_seat>(wl_seat_interface, 1);
    m_manager
        = registry.bind<zwlr_foreign_toplevel_manager_v1>(zwlr_foreign_toplevel_manager_v1_interface, 1);
    if (m_manager)
        zwlr_foreign_toplevel_manager_v1_add_listener(m_manager, &listener, this);
}

ForeignToplevels::~ForeignToplevels()
{
    while (!m_toplevels.isEmpty())
        Events::closed(*m_toplevels.first());
    if (m_manager)
        zwlr_foreign_toplevel_manager_v1_destroy(m_manager);
    if (m_seat)
        wl_seat_destroy(m_seat);
}

std::optional<RunningApplication> ForeignToplevels::frontmost() const
{
    const auto front = std::ranges::find_if(m_toplevels, &Toplevel::isInFront);
    if (front == m_toplevels.cend())
        return {};
    return shownBy((*front)->number, entryNamed((*front)->name), (*front)->name);
}

void ForeignToplevels::activate(const RunningApplication& application)
{
    const auto process = processOf(application);
    const auto numbered = std::ranges::find(m_toplevels, application.handle, &Toplevel::number);
    const auto* const window = process   ? windowFor(*process)
        : numbered != m_toplevels.cend() ? *numbered
                                         : nullptr;
    if (window && m_seat)
        zwlr_foreign_toplevel_handle_v1_activate(window->handle, m_seat);
}

ForeignToplevels::Toplevel* ForeignToplevels::windowFor(qint32 pid) const
{
    for (const auto& program : programsAround(pid)) {
        const auto window = std::ranges::find_if(
            m_toplevels, [&](const Toplevel* shown) { return entryNamed(shown->name) == program; });
        if (window != m_toplevels.cend())
            return *window;
    }
    return nullptr;
}

} // namespace nimbarrow
