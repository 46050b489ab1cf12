#include "macos/pasteboard/PasteboardAccess.h"

namespace nimbarrow {

Pasteboard::Access pasteboardAccess(int behavior)
{
    switch (behavior) {
    case 2: return Pasteboard::Access::Granted;
    case 3: return Pasteboard::Access::Denied;
    // Nothing chosen, or the wish to be asked: for a program's own reading the system asks in both cases.
    default: return Pasteboard::Access::Asked;
    }
}

} // namespace nimbarrow
