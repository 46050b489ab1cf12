#pragma once

#include "platform/Pointer.h"

namespace nimbarrow {

/// The core pointer of the X server.
class X11Pointer final : public Pointer {
public:
    /// `isNested` in a compositor, whose own windows the X server does not see: of a pointer that is over
    /// none of its windows it only knows where that has left the last one.
    explicit X11Pointer(bool isNested)
        : m_isNested(isNested)
    {
    }

    [[nodiscard]] ScreenPoint location() const override;
    [[nodiscard]] bool isAnyButtonDown() const override;

private:
    bool m_isNested;
};

} // namespace nimbarrow
