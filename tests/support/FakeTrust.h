#pragma once

#include "platform/AccessibilityTrust.h"

namespace nimbarrow {

/// Trust as the test grants it.
class FakeTrust final : public AccessibilityTrust {
public:
    bool trusted = true;
    int prompts = 0;

    [[nodiscard]] bool isTrusted() const override { return trusted; }
    void prompt() override { ++prompts; }
};

} // namespace nimbarrow
