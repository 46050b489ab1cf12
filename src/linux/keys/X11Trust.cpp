#include "linux/keys/X11Trust.h"

#include "linux/display/X11Properties.h"

#include <xcb/xtest.h>

namespace nimbarrow {

bool X11Trust::isTrusted() const
{
    auto* connection = x11::qtConnection();
    const auto* extension
        = connection == nullptr ? nullptr : xcb_get_extension_data(connection, &xcb_test_id);
    return extension != nullptr && extension->present != 0;
}

} // namespace nimbarrow
