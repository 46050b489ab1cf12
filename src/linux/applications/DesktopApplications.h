#pragma once

#include "platform/Applications.h"

#include <QList>

#include <memory>

namespace nimbarrow {

class DesktopEntries;
struct DesktopEntry;

/// The programs under the names that their desktop entries give them. By itself it knows processes alone, for
/// a session that tells nobody of its windows: there nothing is in front.
class DesktopApplications : public Applications {
public:
    explicit DesktopApplications(std::unique_ptr<DesktopEntries> entries);
    ~DesktopApplications() override;

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override { return {}; }
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 pid) const override;
    [[nodiscard]] QImage icon(const RunningApplication& application) const final;
    void activate(const RunningApplication& /*application*/) override { }

    /// True where pasting takes one modifier more, because the usual chord means something to the shell.
    [[nodiscard]] bool isTerminalInFront() const;

protected:
    [[nodiscard]] const DesktopEntries& entries() const { return *m_entries; }

    /// The entry of a window by what it says of itself, which may be the name of a desktop file or a class.
    [[nodiscard]] std::optional<DesktopEntry> entryNamed(const QString& name) const;
    /// A program by the window that shows it; none when nothing names it.
    [[nodiscard]] static std::optional<RunningApplication> shownBy(
        quint64 window, const std::optional<DesktopEntry>& entry, const QString& windowClass);
    /// Of a handle that is a process, whose window is looked for when it is wanted.
    [[nodiscard]] static std::optional<qint32> processOf(const RunningApplication& application);
    /// The program of a process, then those that it runs in, such as the terminal of a player.
    [[nodiscard]] QList<DesktopEntry> programsAround(qint32 pid) const;

private:
    std::unique_ptr<DesktopEntries> m_entries;
};

} // namespace nimbarrow
