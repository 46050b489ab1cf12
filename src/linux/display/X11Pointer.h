#pragma once

#include "platform/Pointer.h"

namespace nimbarrow {

/// The core pointer of the X server.
class X11Pointer final : public Pointer {
public:
    [[nodiscard]] ScreenPoint location() const override;
    [[nodiscard]] bool isAnyButtonDown() const override;
};

} // namespace nimbarrow
