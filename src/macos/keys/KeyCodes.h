#pragma once

#include "platform/KeyEvent.h"

#include <QtCore/qnamespace.h>
#include <QtGlobal>

#include <optional>

/// The numbers by which this system knows keys and modifiers.
namespace nimbarrow::keycodes {

/// The place V has on an ANSI keyboard.
inline constexpr quint16 placeOfV = 9;
inline constexpr quint16 placeOfTab = 48;

/// `place` is a virtual key code: a place on the keyboard, whatever it types.
[[nodiscard]] Key keyAt(quint16 place);
/// None for Key::Other.
[[nodiscard]] std::optional<quint16> placeOf(Key key);

/// As hot keys are registered: bits 8 (Command), 9 (Shift), 11 (Option) and 12 (Control).
[[nodiscard]] quint32 hotKeyModifiers(KeyModifiers modifiers);

/// From the flags of an event: bits 17 (Shift), 18 (Control), 19 (Option) and 20 (Command). Others, which
/// tell of Caps Lock, of the keypad or of one of two equal keys, count for nothing.
[[nodiscard]] KeyModifiers modifiersOf(quint64 eventFlags);

/// As Qt names what the key does to a control; Qt::Key_unknown for Key::Other.
[[nodiscard]] Qt::Key qtKeyOf(Key key);
/// Qt calls Command "Control" on this system, and Control "Meta".
[[nodiscard]] Qt::KeyboardModifiers qtModifiersOf(KeyModifiers modifiers);

} // namespace nimbarrow::keycodes
