#pragma once

#include "platform/Instance.h"

namespace nimbarrow {

/// Copies of the program are told by the bundle identifier that they share.
class MacInstance final : public Instance {
public:
    [[nodiscard]] bool anotherIsRunning() override;
};

} // namespace nimbarrow
