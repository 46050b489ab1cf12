#pragma once

#include "platform/Port.h"
#include "platform/ScreenGeometry.h"

namespace nimbarrow {

/// Port: where the pointer is, whichever program it is over.
class Pointer : public Port {
public:
    [[nodiscard]] virtual ScreenPoint location() const = 0;
    [[nodiscard]] virtual bool isAnyButtonDown() const = 0;
};

} // namespace nimbarrow
