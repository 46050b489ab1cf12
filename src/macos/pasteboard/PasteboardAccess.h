#pragma once

#include "platform/Pasteboard.h"

namespace nimbarrow {

/// `behavior` is an NSPasteboardAccessBehavior. What is not known is taken for a question to the user.
[[nodiscard]] Pasteboard::Access pasteboardAccess(int behavior);

} // namespace nimbarrow
