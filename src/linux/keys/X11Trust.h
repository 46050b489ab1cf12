#pragma once

#include "linux/display/X11Properties.h"
#include "platform/AccessibilityTrust.h"

#include <xcb/xtest.h>

namespace nimbarrow {

/// An X server lets every program type, if it has the extension for it; there is nobody to ask.
class X11Trust final : public AccessibilityTrust {
    Q_OBJECT

public:
    using AccessibilityTrust::AccessibilityTrust;

    [[nodiscard]] bool isTrusted() const override
    {
        auto* connection = x11::qtConnection();
        const auto* extension
            = connection == nullptr ? nullptr : xcb_get_extension_data(connection, &xcb_test_id);
        return extension != nullptr && extension->present != 0;
    }

    void prompt() override { }
};

} // namespace nimbarrow
