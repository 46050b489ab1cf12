#include "linux/panel/PanelKeys.h"

#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

namespace nimbarrow {

PanelKeys::PanelKeys(QQuickWindow& window, LetterAt letterAt)
    : m_window(window)
    , m_letterAt(std::move(letterAt))
{
}

std::optional<KeyEvent> PanelKeys::follow(QKeyEvent& event)
{
    KeyModifiers modifiers;
    // People here press Control for what the program calls Command, and its hot key has Super.
    modifiers.setFlag(
        KeyModifier::Command, (event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) != 0);
    modifiers.setFlag(KeyModifier::Shift, event.modifiers().testFlag(Qt::ShiftModifier));
    modifiers.setFlag(KeyModifier::Option, event.modifiers().testFlag(Qt::AltModifier));
    const auto isPress = event.type() == QEvent::KeyPress;
    const KeyEvent told { keyOf(event), modifiers, m_down.contains(event.nativeScanCode()) };
    if (isPress)
        m_down.insert(event.nativeScanCode());
    else
        m_down.remove(event.nativeScanCode());
    if (isPress && isTakenByControl(event))
        return {};
    return told;
}

bool PanelKeys::isTakenByControl(QKeyEvent& event) const
{
    for (auto* item = m_window.activeFocusItem(); item; item = item->parentItem()) {
        event.accept();
        QCoreApplication::sendEvent(item, &event);
        if (event.isAccepted())
            return true;
    }
    return false;
}

Key PanelKeys::keyOf(const QKeyEvent& event) const
{
    switch (event.key()) {
    case Qt::Key_Return: return Key::Return;
    case Qt::Key_Enter: return Key::KeypadEnter;
    case Qt::Key_Space: return Key::Space;
    case Qt::Key_Backspace: return Key::Backspace;
    case Qt::Key_Delete: return Key::ForwardDelete;
    case Qt::Key_Escape: return Key::Escape;
    case Qt::Key_Left: return Key::Left;
    case Qt::Key_Right: return Key::Right;
    case Qt::Key_Down: return Key::Down;
    case Qt::Key_Up: return Key::Up;
    default: return m_letterAt(event.nativeScanCode());
    }
}

} // namespace nimbarrow
