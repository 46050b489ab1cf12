#pragma once

#include "linux/display/DisplayChoice.h"
#include "platform/Platform.h"

namespace nimbarrow {

class DesktopApplications;
class LinuxSessionLock;

/// Sets the ports that the windowing system serves; all others are set already. `lock`, which lives as long
/// as they do, learns what the display shows.
void addX11Ports(Platform& platform, DisplaySystem system, LinuxSessionLock& lock);
void addWaylandPorts(Platform& platform);

/// Sets the hot key where it is a service of the session's message bus that has such keys.
void addBusHotKeys(Platform& platform, bool isKWin);

/// Sets the keystrokes where it is the desktop's portal that lets programs type. `applications` is a port of
/// the same platform.
void addPortalKeystrokes(Platform& platform, const DesktopApplications& applications);

} // namespace nimbarrow
