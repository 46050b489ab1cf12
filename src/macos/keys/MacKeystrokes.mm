#include "macos/keys/MacKeystrokes.h"

#include "macos/keys/KeyCodes.h"
#include "macos/session/CfOwner.h"

#include <ApplicationServices/ApplicationServices.h>

namespace nimbarrow {

void MacKeystrokes::postPaste()
{
    const CfOwner<CGEventSourceRef> source(CGEventSourceCreate(kCGEventSourceStateCombinedSessionState));
    for (const bool down : { true, false }) {
        const CfOwner<CGEventRef> event(CGEventCreateKeyboardEvent(source.get(), keycodes::placeOfV, down));
        if (!event)
            continue;
        // Command alone, whatever the user still holds down.
        CGEventSetFlags(event.get(), kCGEventFlagMaskCommand);
        CGEventPost(kCGHIDEventTap, event.get());
    }
}

} // namespace nimbarrow
