#include "macos/applications/MacApplications.h"

#include "macos/applications/PictureOf.h"

#include <AppKit/AppKit.h>

namespace nimbarrow {

namespace {

constexpr int largestIcon = 128;

std::optional<RunningApplication> described(NSRunningApplication* application)
{
    // A program that is about to end has no number any more.
    if (!application || application.processIdentifier <= 0)
        return {};
    return RunningApplication { QString::fromNSString(application.localizedName),
        QString::fromNSString(application.bundleIdentifier),
        static_cast<quint64>(application.processIdentifier) };
}

NSRunningApplication* running(const RunningApplication& application)
{
    if (application.handle == 0)
        return nil;
    auto* const found =
        [NSRunningApplication runningApplicationWithProcessIdentifier:static_cast<pid_t>(application.handle)];
    // The number of a program that has ended may be another one's by now.
    return found && QString::fromNSString(found.bundleIdentifier) == application.identifier ? found : nil;
}

} // namespace

std::optional<RunningApplication> MacApplications::frontmost() const
{
    return described(NSWorkspace.sharedWorkspace.frontmostApplication);
}

std::optional<RunningApplication> MacApplications::withProcess(qint32 pid) const
{
    return described([NSRunningApplication runningApplicationWithProcessIdentifier:pid]);
}

QImage MacApplications::icon(const RunningApplication& application) const
{
    return pictureOf(running(application).icon, largestIcon);
}

void MacApplications::activate(const RunningApplication& application)
{
    [running(application) activateWithOptions:0];
}

} // namespace nimbarrow
