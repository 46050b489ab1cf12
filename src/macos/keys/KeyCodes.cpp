#include "macos/keys/KeyCodes.h"

#include <algorithm>
#include <array>

namespace nimbarrow::keycodes {

namespace {

struct Entry {
    quint16 place;
    Key key;
    Qt::Key qtKey;
};

constexpr std::array known {
    Entry { 8, Key::C, Qt::Key_C },
    Entry { placeOfV, Key::V, Qt::Key_V },
    Entry { 36, Key::Return, Qt::Key_Return },
    Entry { 76, Key::KeypadEnter, Qt::Key_Enter },
    Entry { 49, Key::Space, Qt::Key_Space },
    Entry { 51, Key::Backspace, Qt::Key_Backspace },
    Entry { 117, Key::ForwardDelete, Qt::Key_Delete },
    Entry { 53, Key::Escape, Qt::Key_Escape },
    Entry { 123, Key::Left, Qt::Key_Left },
    Entry { 124, Key::Right, Qt::Key_Right },
    Entry { 125, Key::Down, Qt::Key_Down },
    Entry { 126, Key::Up, Qt::Key_Up },
};

struct Bits {
    KeyModifier modifier;
    quint32 hotKey;
    quint64 event;
    Qt::KeyboardModifier qt;
};

constexpr std::array modifierBits {
    Bits { KeyModifier::Command, 1U << 8U, 1U << 20U, Qt::ControlModifier },
    Bits { KeyModifier::Shift, 1U << 9U, 1U << 17U, Qt::ShiftModifier },
    Bits { KeyModifier::Option, 1U << 11U, 1U << 19U, Qt::AltModifier },
    Bits { KeyModifier::Control, 1U << 12U, 1U << 18U, Qt::MetaModifier },
};

const Entry* find(Key key)
{
    const auto* const entry = std::ranges::find(known, key, &Entry::key);
    return entry == known.end() ? nullptr : &*entry;
}

} // namespace

Key keyAt(quint16 place)
{
    const auto* const entry = std::ranges::find(known, place, &Entry::place);
    return entry == known.end() ? Key::Other : entry->key;
}

std::optional<quint16> placeOf(Key key)
{
    if (const auto* const entry = find(key))
        return entry->place;
    return {};
}

quint32 hotKeyModifiers(KeyModifiers modifiers)
{
    quint32 result = 0;
    for (const auto& bits : modifierBits)
        result |= modifiers.testFlag(bits.modifier) ? bits.hotKey : 0;
    return result;
}

KeyModifiers modifiersOf(quint64 eventFlags)
{
    KeyModifiers result;
    for (const auto& bits : modifierBits)
        result.setFlag(bits.modifier, (eventFlags & bits.event) != 0);
    return result;
}

Qt::Key qtKeyOf(Key key)
{
    const auto* const entry = find(key);
    return entry ? entry->qtKey : Qt::Key_unknown;
}

Qt::KeyboardModifiers qtModifiersOf(KeyModifiers modifiers)
{
    Qt::KeyboardModifiers result;
    for (const auto& bits : modifierBits)
        result.setFlag(bits.qt, modifiers.testFlag(bits.modifier));
    return result;
}

} // namespace nimbarrow::keycodes
