#pragma once

#include "linux/applications/DesktopApplications.h"

#include <QList>

struct wl_display;
struct wl_seat;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace nimbarrow {

/// The programs by the windows that the compositor lists for everybody who asks. They say no process, so a
/// process is shown by a window of the same program.
class ForeignToplevels final : public DesktopApplications {
public:
    /// Waits for one answer of the compositor. The connection's events are read on this thread, and it lives
    /// longer.
    explicit ForeignToplevels(wl_display* display);
    ForeignToplevels(wl_display* display, std::unique_ptr<DesktopEntries> entries);
    ~ForeignToplevels() override;

    /// Whether the compositor lists its windows.
    [[nodiscard]] bool isAvailable() const { return m_manager != nullptr; }

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override;
    void activate(const RunningApplication& application) override;

private:
    struct Toplevel;
    struct Events;

    [[nodiscard]] Toplevel* windowFor(qint32 pid) const;

    wl_seat* m_seat = nullptr;
    zwlr_foreign_toplevel_manager_v1* m_manager = nullptr;
    /// In the order in which they were last in front.
    QList<Toplevel*> m_toplevels;
    quint64 m_lastNumber = 0;
};

} // namespace nimbarrow
