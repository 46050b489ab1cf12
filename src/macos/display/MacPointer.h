#pragma once

#include "platform/Pointer.h"

namespace nimbarrow {

/// The pointer as the window server knows it, also over other programs.
class MacPointer final : public Pointer {
public:
    [[nodiscard]] ScreenPoint location() const override;
    [[nodiscard]] bool isAnyButtonDown() const override;
};

} // namespace nimbarrow
