#pragma once

#include "platform/Applications.h"

#include <memory>

namespace nimbarrow {

class DesktopEntries;
struct DesktopEntry;

/// The programs as the window manager tells of their windows and desktop entries name them.
class X11Applications final : public Applications {
public:
    X11Applications();
    explicit X11Applications(std::unique_ptr<DesktopEntries> entries);
    ~X11Applications() override;

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override;
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 pid) const override;
    [[nodiscard]] QImage icon(const RunningApplication& application) const override;
    void activate(const RunningApplication& application) override;

    /// True where pasting takes one modifier more, because the usual chord means something to the shell.
    [[nodiscard]] bool isTerminalInFront() const;

private:
    [[nodiscard]] std::optional<quint32> windowFor(qint32 pid) const;
    [[nodiscard]] std::optional<DesktopEntry> entryOf(quint32 window) const;

    std::unique_ptr<DesktopEntries> m_entries;
};

} // namespace nimbarrow
