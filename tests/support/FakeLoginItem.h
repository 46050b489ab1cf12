#pragma once

#include "platform/LoginItem.h"

namespace nimbarrow {

/// A login item that fails when the test gives it an error.
class FakeLoginItem final : public LoginItem {
public:
    bool enabled = false;
    bool outsideApplications = false;
    std::optional<QString> error;

    [[nodiscard]] bool isEnabled() const override { return enabled; }
    std::optional<QString> setEnabled(bool enable) override
    {
        if (!error)
            enabled = enable;
        return error;
    }
    [[nodiscard]] bool runsOutsideApplications() const override { return outsideApplications; }
};

} // namespace nimbarrow
