#pragma once

#include <QFlags>

namespace nimbarrow {

/// A key. The letters of shortcuts go by their place on the keyboard, named for what it types on a US layout,
/// so that they stay where they are under every layout; all others by what they do, wherever the user has put
/// them.
enum class Key {
    Other,
    C,
    V,
    Return,
    KeypadEnter,
    Space,
    Backspace,
    ForwardDelete,
    Escape,
    Left,
    Right,
    Down,
    Up
};

/// Modifiers in the program's words. The adapter says which key of its system each one is.
enum class KeyModifier { Command = 1, Shift = 2, Option = 4, Control = 8 };
Q_DECLARE_FLAGS(KeyModifiers, KeyModifier)
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyModifiers)

/// One key going down or up.
struct KeyEvent {
    Key key = Key::Other;
    KeyModifiers modifiers;
    bool isRepeat = false;
};

} // namespace nimbarrow
