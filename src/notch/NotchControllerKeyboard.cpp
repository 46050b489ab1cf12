// The keyboard mode of the controller: the hot key opens it, and it lasts until something closes it.
#include "clipboard/ClipboardMonitor.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/Paster.h"
#include "notch/NotchController.h"
#include "platform/Keystrokes.h"

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

constexpr auto spaceHoldDelay = 350ms;
// The program that gets the keyboard back needs a moment before it can take a keystroke.
constexpr auto pasteDelay = 50ms;

} // namespace

void NotchController::toggleKeyboard()
{
    if (m_state.keyboardMode())
        closeKeyboard(true);
    else if (m_state.geometry())
        openKeyboard();
}

void NotchController::openKeyboard()
{
    m_previousApp = m_services.applications.frontmost();
    setMode(NotchState::Expanded);
    hold();
    m_state.setKeyboardMode(true);
    m_selection.selectInitial();
    m_panel.setAllowsKey(true);
    m_panel.makeKey();
}

void NotchController::closeKeyboard(bool collapsing)
{
    if (!m_state.keyboardMode())
        return;
    m_state.setKeyboardMode(false);
    m_spaceHold.cancel();
    endSpaceHold();
    m_selection.clear();
    const auto wasKey = m_panel.isKey();
    m_panel.setAllowsKey(false);
    // Whoever has taken the keyboard from the panel meanwhile was chosen by the user and keeps it.
    if (m_previousApp && wasKey)
        m_services.applications.activate(*m_previousApp);
    m_previousApp.reset();
    release();
    if (collapsing)
        setMode(NotchState::Collapsed);
}

void NotchController::handleKey(const KeyEvent& event)
{
    if (!m_state.keyboardMode())
        return;
    using enum Key;
    // Behind the settings nobody sees what is selected, and nothing may happen to it.
    if (m_state.showSettings() && event.key != Escape && event.key != V)
        return;
    switch (event.key) {
    case C:
        if (event.modifiers == KeyModifier::Command)
            copySelected();
        break;
    case V:
        if (event.modifiers == (KeyModifier::Command | KeyModifier::Shift))
            closeKeyboard(true);
        break;
    case Return:
    case KeypadEnter: pasteSelected(); break;
    case Space:
        if (!event.modifiers && !event.isRepeat)
            beginSpaceHold();
        break;
    case Backspace:
    case ForwardDelete: removeSelected(); break;
    case Escape: closeKeyboard(true); break;
    case Left: m_selection.move(KeyboardSelection::Move::Left); break;
    case Right: m_selection.move(KeyboardSelection::Move::Right); break;
    case Down: m_selection.move(KeyboardSelection::Move::Down); break;
    case Up: m_selection.move(KeyboardSelection::Move::Up); break;
    case Other: break;
    }
}

void NotchController::handleKeyUp(const KeyEvent& event)
{
    if (!m_state.keyboardMode() || event.key != Key::Space)
        return;
    if (m_spaceHold.isSet()) {
        // Let go too early for a preview: it was a tap.
        m_spaceHold.cancel();
        if (onPlayPause)
            onPlayPause();
    }
    endSpaceHold();
}

void NotchController::beginSpaceHold()
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
        preview(id);
    });
}

void NotchController::endSpaceHold()
{
    if (!m_spacePreviewing)
        return;
    m_spacePreviewing = false;
    preview({});
}

void NotchController::copySelected()
{
    if (const auto item = m_selection.item())
        m_services.monitor.write(*item);
    closeKeyboard(true);
}

void NotchController::removeSelected()
{
    if (const auto item = m_selection.item())
        m_services.store.remove(item->id);
}

void NotchController::pasteSelected()
{
    if (const auto item = m_selection.item())
        m_services.paster.paste(*item, true);
    collapse();
}

void NotchController::deliverPaste()
{
    if (!m_state.keyboardMode()) {
        m_services.keystrokes.postPaste();
        return;
    }
    closeKeyboard(true);
    m_pasteTimer = m_services.scheduler.after(pasteDelay, [this] { m_services.keystrokes.postPaste(); });
}

} // namespace nimbarrow
