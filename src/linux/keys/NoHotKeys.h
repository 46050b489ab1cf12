#pragma once

#include "platform/HotKeys.h"

namespace nimbarrow {

/// A desktop that gives no program keys that belong to all of it.
class NoHotKeys final : public HotKeys {
public:
    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key /*key*/, KeyModifiers /*modifiers*/, std::function<void()> /*pressed*/) override
    {
        return std::make_unique<Registration>();
    }
};

} // namespace nimbarrow
