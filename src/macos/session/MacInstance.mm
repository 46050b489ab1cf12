#include "macos/session/MacInstance.h"

#include <AppKit/AppKit.h>

namespace nimbarrow {

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
