#pragma once

#include "linux/applications/DesktopApplications.h"

namespace nimbarrow {

/// The programs as the window manager tells of their windows and desktop entries name them.
class X11Applications final : public DesktopApplications {
public:
    X11Applications();
    explicit X11Applications(std::unique_ptr<DesktopEntries> entries);

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override;
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 pid) const override;
    void activate(const RunningApplication& application) override;

private:
    [[nodiscard]] std::optional<quint32> windowFor(qint32 pid) const;
    [[nodiscard]] std::optional<DesktopEntry> entryOf(quint32 window) const;
};

} // namespace nimbarrow
