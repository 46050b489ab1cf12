#pragma once

#include "linux/display/DisplayChoice.h"
#include "platform/Platform.h"

namespace nimbarrow {

class LinuxSessionLock;

/// Sets the ports that the windowing system serves; all others are set already. `lock`, which lives as long
/// as they do, learns what the display shows.
void addX11Ports(Platform& platform, DisplaySystem system, LinuxSessionLock& lock);
void addWaylandPorts(Platform& platform);

} // namespace nimbarrow
