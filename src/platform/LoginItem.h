#pragma once

#include "platform/Port.h"

#include <QString>

#include <optional>

namespace nimbarrow {

/// Port: whether the program starts when the user logs in.
class LoginItem : public Port {
public:
    [[nodiscard]] virtual bool isEnabled() const = 0;

    /// None when it worked, else where it failed and why, in words for the user.
    virtual std::optional<QString> setEnabled(bool enabled) = 0;

    /// True where a program at this place may be gone or moved at the next login.
    [[nodiscard]] virtual bool runsOutsideApplications() const = 0;
};

} // namespace nimbarrow
