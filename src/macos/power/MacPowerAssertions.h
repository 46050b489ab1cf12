#pragma once

#include "platform/PowerAssertions.h"

namespace nimbarrow {

/// Assertions of the system's power management, which answers at once.
class MacPowerAssertions final : public PowerAssertions {
public:
    [[nodiscard]] std::unique_ptr<Assertion> create(
        Type type, const QString& name, std::function<void()> failed) override;
};

} // namespace nimbarrow
