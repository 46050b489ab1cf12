#pragma once

#include "macos/session/Observation.h"
#include "platform/AccessibilityTrust.h"

namespace nimbarrow {

/// The system's list of programs that may control the computer.
class MacTrust final : public AccessibilityTrust {
public:
    MacTrust();

    [[nodiscard]] bool isTrusted() const override;
    void prompt() override;

private:
    Observation m_listChanged;
};

} // namespace nimbarrow
