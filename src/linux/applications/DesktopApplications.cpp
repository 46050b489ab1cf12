#include "linux/applications/DesktopApplications.h"

#include "linux/applications/DesktopEntries.h"
#include "linux/applications/Processes.h"

#include <QIcon>
#include <QPixmap>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr auto largestIcon = 128;
constexpr quint64 processMark = quint64(1) << 32;
/// How far up from a player the terminal may be that it runs in.
constexpr auto mostAncestors = 8;

} // namespace

DesktopApplications::DesktopApplications(std::unique_ptr<DesktopEntries> entries)
    : m_entries(std::move(entries))
{
}

DesktopApplications::~DesktopApplications() = default;

std::optional<RunningApplication> DesktopApplications::withProcess(qint32 pid) const
{
    const auto program = processes::name(pid);
    if (program.isEmpty())
        return {};
    const auto entry = m_entries->byWindowClass(program).value_or(DesktopEntry {});
    return RunningApplication { entry.name, entry.id, processMark | static_cast<quint32>(pid) };
}

QImage DesktopApplications::icon(const RunningApplication& application) const
{
    const auto entry = m_entries->byId(application.identifier);
    if (!entry || entry->icon.isEmpty())
        return {};
    const auto isFile = entry->icon.startsWith(u'/');
    const auto icon = isFile ? QIcon(entry->icon) : QIcon::fromTheme(entry->icon);
    return icon.pixmap(QSize(largestIcon, largestIcon), 1.0).toImage();
}

bool DesktopApplications::isTerminalInFront() const
{
    const auto front = frontmost();
    const auto entry = front ? m_entries->byId(front->identifier) : std::nullopt;
    return entry && entry->categories.contains("TerminalEmulator"_L1);
}

std::optional<DesktopEntry> DesktopApplications::entryNamed(const QString& name) const
{
    if (name.isEmpty())
        return {};
    if (auto entry = m_entries->byId(name))
        return entry;
    return m_entries->byWindowClass(name);
}

std::optional<RunningApplication> DesktopApplications::shownBy(
    quint64 window, const std::optional<DesktopEntry>& entry, const QString& windowClass)
{
    if (entry)
        return RunningApplication { entry->name, entry->id, window };
    if (windowClass.isEmpty())
        return {};
    return RunningApplication { windowClass, {}, window };
}

std::optional<qint32> DesktopApplications::processOf(const RunningApplication& application)
{
    if ((application.handle & processMark) == 0)
        return {};
    return static_cast<qint32>(application.handle & ~processMark);
}

QList<DesktopEntry> DesktopApplications::programsAround(qint32 pid) const
{
    QList<DesktopEntry> programs;
    for (auto above = 0; above <= mostAncestors && pid > 1; ++above, pid = processes::parent(pid)) {
        if (const auto entry = m_entries->byWindowClass(processes::name(pid)))
            programs << *entry;
    }
    return programs;
}

} // namespace nimbarrow
