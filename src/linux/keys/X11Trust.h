#pragma once

#include "platform/AccessibilityTrust.h"

namespace nimbarrow {

/// An X server lets every program type, if it has the extension for it; there is nobody to ask.
class X11Trust final : public AccessibilityTrust {
    Q_OBJECT

public:
    using AccessibilityTrust::AccessibilityTrust;

    [[nodiscard]] bool isTrusted() const override;
    void prompt() override { }
};

} // namespace nimbarrow
