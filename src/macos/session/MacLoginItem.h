#pragma once

#include "platform/LoginItem.h"

namespace nimbarrow {

/// The program itself as a login item. The system's list is the only state: it is read at every question.
class MacLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isEnabled() const override;
    std::optional<QString> setEnabled(bool enabled) override;
    [[nodiscard]] bool runsOutsideApplications() const override;
};

} // namespace nimbarrow
