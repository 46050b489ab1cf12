#pragma once

#include "platform/Port.h"

#include <memory>

class QWindow;

namespace nimbarrow::wayland {

/// Keeps the compositor from darkening or locking the display for as long as the result lives and the window
/// is to be seen. Null where the compositor cannot be asked to. The window may die first.
[[nodiscard]] std::unique_ptr<Port> inhibitIdle(QWindow& window);

} // namespace nimbarrow::wayland
