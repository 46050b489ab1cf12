#pragma once

#include "platform/PowerAssertions.h"

#include <QString>

namespace nimbarrow {

/// By which the system's power management knows a kind of assertion.
[[nodiscard]] QString assertionType(PowerAssertions::Type type);

} // namespace nimbarrow
