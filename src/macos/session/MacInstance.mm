#include "macos/session/MacInstance.h"

#include <AppKit/AppKit.h>

namespace nimbarrow {

static QString notificationFor(Instance::Request request)
{
    return QStringLiteral("ua.tessak.Nimbarrow.request-%1").arg(static_cast<int>(request));
}

MacInstance::MacInstance()
{
    for (const auto request : { Request::Open, Request::ToggleKeyboard, Request::Quit })
        m_requests.emplace_back(Observation::Centre::Distributed, notificationFor(request),
            [this, request] { Q_EMIT asked(request); });
}

bool MacInstance::ask(Request request)
{
    auto* const centre = NSDistributedNotificationCenter.defaultCenter;
    auto* const name = notificationFor(request).toNSString();
    [centre postNotificationName:name object:nil userInfo:nil deliverImmediately:YES];
    return anotherIsRunning();
}

bool MacInstance::anotherIsRunning()
{
    auto* const identifier = NSBundle.mainBundle.bundleIdentifier;
    // A program that was built without a bundle is nobody's copy.
    if (!identifier)
        return false;
    const auto own = NSRunningApplication.currentApplication.processIdentifier;
    for (NSRunningApplication* copy in
        [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
        if (copy.processIdentifier != own)
            return true;
    }
    return false;
}

} // namespace nimbarrow
