#pragma once

#include "platform/KeyEvent.h"

#include <QKeyCombination>

namespace nimbarrow {

/// A shortcut's letter with its modifiers, as Qt and KDE have it: the key that is called Command is Meta
/// here.
[[nodiscard]] inline QKeyCombination qtKeys(Key letter, KeyModifiers modifiers)
{
    Qt::KeyboardModifiers held;
    held.setFlag(Qt::MetaModifier, modifiers.testFlag(KeyModifier::Command));
    held.setFlag(Qt::ShiftModifier, modifiers.testFlag(KeyModifier::Shift));
    held.setFlag(Qt::AltModifier, modifiers.testFlag(KeyModifier::Option));
    held.setFlag(Qt::ControlModifier, modifiers.testFlag(KeyModifier::Control));
    return QKeyCombination(held,
        letter == Key::C       ? Qt::Key_C
            : letter == Key::V ? Qt::Key_V
                               : Qt::Key_unknown);
}

} // namespace nimbarrow
