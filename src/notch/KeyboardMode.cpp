#include "notch/KeyboardMode.h"

#include "clipboard/ClipboardMonitor.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/Paster.h"
#include "notch/ControlFocus.h"
#include "notch/NotchActions.h"
#include "notch/NotchState.h"
#include "platform/Keystrokes.h"
#include "platform/PanelWindow.h"

#include <QQuickWindow>

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

constexpr auto spaceHoldDelay = 350ms;
// The program that gets the keyboard back needs a moment before it can take a keystroke.
constexpr auto pasteDelay = 50ms;

} // namespace

KeyboardMode::KeyboardMode(
    const NotchServices& services, NotchState& state, const NotchActions& actions, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_state(state)
    , m_actions(actions)
    , m_selection(state, services.store)
{
    auto& window = m_services.panelWindow;
    connect(&window, &PanelWindow::keyPressed, this, &KeyboardMode::handleKey);
    connect(&window, &PanelWindow::keyReleased, this, &KeyboardMode::handleKeyUp);
    connect(&window, &PanelWindow::resignedKey, this, [this] {
        if (isOn())
            m_actions.collapse();
    });
    connect(&m_services.store, &ClipboardStore::itemsChanged, this, [this] { m_selection.reconcile(); });
}

void KeyboardMode::attach(QQuickWindow& window)
{
    m_focus = new ControlFocus(window, &window);
    // Only one thing at a time has the keys, and it is the one that is marked.
    connect(m_focus, &ControlFocus::reached, this, [this] { m_selection.clear(); });
}

bool KeyboardMode::isOn() const
{
    return m_state.keyboardMode();
}

void KeyboardMode::open()
{
    m_previousApp = m_services.applications.frontmost();
    m_state.setKeyboardMode(true);
    m_selection.selectInitial();
    m_services.panelWindow.makeKey();
}

void KeyboardMode::close()
{
    if (!isOn())
        return;
    m_state.setKeyboardMode(false);
    m_spaceHold.cancel();
    endSpaceHold();
    m_selection.clear();
    if (m_focus)
        m_focus->drop();
    const auto wasKey = m_services.panelWindow.isKey();
    m_services.panelWindow.resignKey();
    // Whoever has taken the keyboard from the panel meanwhile was chosen by the user and keeps it. And who
    // has it back need not come to the front: where the focus follows the mouse it may lie below others.
    if (m_previousApp && wasKey && !m_services.panelWindow.hasReturnedKey())
        m_services.applications.activate(*m_previousApp);
    m_previousApp.reset();
}

bool KeyboardMode::belongsToEntry(Key key)
{
    using enum Key;
    return key == Return || key == KeypadEnter || key == Space || key == Backspace || key == ForwardDelete;
}

void KeyboardMode::handleKey(const KeyEvent& event)
{
    if (!isOn())
        return;
    using enum Key;
    // Behind the settings nobody sees what is selected, and nothing may happen to it.
    if (m_state.showSettings() && event.key != Escape && event.key != V)
        return;
    // The control has no use for it, and nobody else is marked.
    if (m_focus && m_focus->isOnControl() && belongsToEntry(event.key))
        return;
    switch (event.key) {
    case C:
        if (event.modifiers == KeyModifier::Command)
            copySelected();
        break;
    case V:
        if (event.modifiers == (KeyModifier::Command | KeyModifier::Shift))
            m_actions.collapse();
        break;
    case Return:
    case KeypadEnter: pasteSelected(); break;
    case Space:
        if (!event.modifiers && !event.isRepeat)
            beginSpaceHold();
        break;
    case Backspace:
    case ForwardDelete: removeSelected(); break;
    case Escape: m_actions.collapse(); break;
    case Left: moveSelection(KeyboardSelection::Move::Left); break;
    case Right: moveSelection(KeyboardSelection::Move::Right); break;
    case Down: moveSelection(KeyboardSelection::Move::Down); break;
    case Up: moveSelection(KeyboardSelection::Move::Up); break;
    case Other: break;
    }
}

void KeyboardMode::handleKeyUp(const KeyEvent& event)
{
    if (!isOn() || event.key != Key::Space)
        return;
    if (m_spaceHold.isSet()) {
        // Let go too early for a preview: it was a tap.
        m_spaceHold.cancel();
        if (onPlayPause)
            onPlayPause();
    }
    endSpaceHold();
}

void KeyboardMode::beginSpaceHold()
{
    if (m_spaceHold.isSet() || m_spacePreviewing)
        return;
    const auto item = m_selection.item();
    if (m_selection.list() != KeyboardSelection::List::Images || !item) {
        if (onPlayPause)
            onPlayPause();
        return;
    }
    m_spaceHold = m_services.scheduler.after(spaceHoldDelay, [this, id = item->id] {
        m_spaceHold.cancel();
        m_spacePreviewing = true;
        m_actions.preview(id);
    });
}

void KeyboardMode::endSpaceHold()
{
    if (!m_spacePreviewing)
        return;
    m_spacePreviewing = false;
    m_actions.closePreview();
}

void KeyboardMode::moveSelection(KeyboardSelection::Move move)
{
    if (m_focus)
        m_focus->drop();
    m_selection.move(move);
}

void KeyboardMode::copySelected()
{
    if (const auto item = m_selection.item())
        m_services.monitor.write(*item);
    m_actions.collapse();
}

void KeyboardMode::removeSelected()
{
    if (const auto item = m_selection.item())
        m_services.store.remove(item->id);
}

void KeyboardMode::pasteSelected()
{
    if (const auto item = m_selection.item())
        m_services.paster.paste(*item, true);
    m_actions.collapse();
}

void KeyboardMode::deliverPaste()
{
    if (!isOn()) {
        m_services.keystrokes.postPaste();
        return;
    }
    m_actions.collapse();
    m_pasteTimer = m_services.scheduler.after(pasteDelay, [this] { m_services.keystrokes.postPaste(); });
}

} // namespace nimbarrow
