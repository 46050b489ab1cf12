#pragma once

#include "platform/PowerAssertions.h"

#include <QString>

namespace nimbarrow {

/// By which the system's power management knows a kind of assertion.
[[nodiscard]] inline QString assertionType(PowerAssertions::Type type)
{
    return type == PowerAssertions::Type::PreventUserIdleDisplaySleep
        ? QStringLiteral("PreventUserIdleDisplaySleep")
        : QStringLiteral("PreventSystemSleep");
}

} // namespace nimbarrow
