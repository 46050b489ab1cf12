#pragma once

#include "platform/AccessibilityTrust.h"

namespace nimbarrow {

/// What a session lets programs do or not for as long as it lasts; there is nobody to ask.
class StandingTrust final : public AccessibilityTrust {
    Q_OBJECT

public:
    explicit StandingTrust(bool isTrusted)
        : m_isTrusted(isTrusted)
    {
    }

    [[nodiscard]] bool isTrusted() const override { return m_isTrusted; }
    void prompt() override { }

private:
    bool m_isTrusted;
};

} // namespace nimbarrow
