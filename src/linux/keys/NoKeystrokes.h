#pragma once

#include "platform/AccessibilityTrust.h"
#include "platform/Keystrokes.h"

namespace nimbarrow {

/// A desktop that lets no program type.
class NoKeystrokes final : public Keystrokes {
public:
    void postPaste() override { }
};

/// Says so.
class NoTrust final : public AccessibilityTrust {
    Q_OBJECT

public:
    using AccessibilityTrust::AccessibilityTrust;

    [[nodiscard]] bool isTrusted() const override { return false; }
    void prompt() override { }
};

} // namespace nimbarrow
