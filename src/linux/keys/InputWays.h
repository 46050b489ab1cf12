#pragma once

#include "linux/display/DisplayChoice.h"

namespace nimbarrow {

/// What the windowing system has for windows and keys.
struct InputFacts {
    DisplaySystem system = DisplaySystem::X11;
    bool listsToplevels = false;
    bool isKWin = false;
    bool lendsKeyboards = false;
    bool takesFakeInput = false;
};

/// What is on the session's message bus for keys.
struct BusKeyFacts {
    /// Elsewhere KDE's shortcuts may be served too, but reach nobody.
    bool isKWin = false;
    /// KDE's shortcuts.
    bool hasGlobalAccel = false;
    /// The version of the portal; 0 where there is none.
    unsigned globalShortcuts = 0;
    /// The desktop's settings have keys that start programs.
    bool hasCustomKeys = false;
};

/// How the program in front is known.
enum class FrontWay { X11, ForeignToplevels, KWin, Nothing };
[[nodiscard]] FrontWay frontWay(const InputFacts& facts);

/// How the paste keystroke is typed. Whether there is such a portal is known only later.
enum class PasteWay { TestExtension, VirtualKeyboard, FakeInput, Portal };
[[nodiscard]] PasteWay pasteWay(const InputFacts& facts);

/// How the hot key reaches the program, where it cannot simply be grabbed.
enum class HotKeyWay { GlobalAccel, Portal, Custom, Nothing };
[[nodiscard]] HotKeyWay hotKeyWay(const BusKeyFacts& facts);

/// What makes a key of the compositor open the program, as a line for its configuration; empty for one whose
/// configuration is not known. `desktops` is what XDG_CURRENT_DESKTOP names.
[[nodiscard]] QString hotKeyLine(const QString& desktops);

} // namespace nimbarrow
