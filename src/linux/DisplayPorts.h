#pragma once

#include "linux/display/DisplayChoice.h"
#include "linux/keys/StandingTrust.h"
#include "platform/Platform.h"

namespace nimbarrow {

class DesktopApplications;
class LinuxSessionLock;

/// Sets the ports that the windowing system serves; all others are set already. `lock`, which lives as long
/// as they do, learns what the display shows.
void addX11Ports(Platform& platform, DisplaySystem system, LinuxSessionLock& lock);
void addWaylandPorts(Platform& platform);

[[nodiscard]] inline Capability unless(bool works, const QString& words, const QString& ukrainianWords = {})
{
    return works ? Capability() : Capability { Capability::State::NotHere, words, ukrainianWords };
}

[[nodiscard]] inline Capability frontUnknown()
{
    using namespace Qt::StringLiterals;
    return unless(
        false, u"The compositor does not tell which program is in front: entries bear no program's name."_s);
}

/// Says whether the program may type, as the trust that is set already has it.
void addTypingCapability(Platform& platform);

/// Sets the keystrokes of a windowing system, which lets programs type or does not; nobody is asked.
template <typename Type>
void setKeystrokes(Platform& platform, std::unique_ptr<Type> keystrokes)
{
    platform.accessibilityTrust = std::make_unique<StandingTrust>(keystrokes->isAvailable());
    platform.keystrokes = std::move(keystrokes);
    addTypingCapability(platform);
}

/// Sets the hot key where it is a service of the session's message bus that has such keys.
void addBusHotKeys(Platform& platform, bool isKWin);

/// Sets the keystrokes where it is the desktop's portal that lets programs type. `applications` is a port of
/// the same platform.
void addPortalKeystrokes(Platform& platform, const DesktopApplications& applications);

} // namespace nimbarrow
