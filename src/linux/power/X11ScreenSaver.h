#pragma once

#include "platform/Port.h"

#include <QByteArray>

#include <memory>

namespace nimbarrow::x11 {

/// Keeps the X server from blanking the display and from switching it off for as long as the result lives.
/// Null where the server cannot be asked to. An empty display name means the one of the environment.
[[nodiscard]] std::unique_ptr<Port> suspendScreenSaver(const QByteArray& display = {});

} // namespace nimbarrow::x11
