#include "linux/keys/X11Keystrokes.h"

#include "linux/applications/DesktopApplications.h"
#include "linux/display/X11Properties.h"
#include "linux/keys/X11Keyboard.h"

#include <algorithm>
#include <xcb/xtest.h>

namespace nimbarrow {
namespace {

using KeyCodes = QList<xcb_keycode_t>;

KeyCodes keysDown(xcb_connection_t* connection)
{
    const auto keymap = x11::owned(xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    KeyCodes down;
    for (auto code = 0; keymap && code < 256; ++code) {
        if ((keymap->keys[code / 8] & (1 << (code % 8))) != 0)
            down << static_cast<xcb_keycode_t>(code);
    }
    return down;
}

} // namespace

X11Keystrokes::X11Keystrokes(const DesktopApplications& applications)
    : m_applications(applications)
{
}

bool X11Keystrokes::isAvailable() const
{
    return x11::majorOpcode(x11::qtConnection(), &xcb_test_id) != 0;
}

void X11Keystrokes::postPaste()
{
    if (!isAvailable())
        return;
    auto* connection = x11::qtConnection();
    const X11Keyboard keyboard(connection);
    const auto control = keyboard.codeOfModifier(XCB_MAP_INDEX_CONTROL);
    const auto shift = keyboard.codeOfModifier(XCB_MAP_INDEX_SHIFT);
    const auto v = keyboard.codeTypingV();
    if (!control || !shift || !v)
        return;

    auto chord = KeyCodes { *control, *v };
    if (m_applications.isTerminalInFront())
        chord.insert(1, *shift);

    const auto down = keysDown(connection);
    KeyCodes lifted;
    std::ranges::copy_if(keyboard.heldModifierCodes(), std::back_inserter(lifted),
        [&down](xcb_keycode_t code) { return down.contains(code); });

    const auto type = [connection, root = x11::rootWindow(connection)](uint8_t event, xcb_keycode_t code) {
        xcb_test_fake_input(connection, event, code, XCB_CURRENT_TIME, root, 0, 0, 0);
    };
    for (const auto code : std::as_const(lifted))
        type(XCB_KEY_RELEASE, code);
    // A key that is down cannot go down; it is the user who holds it, so it is not put back.
    if (down.contains(*v))
        type(XCB_KEY_RELEASE, *v);
    for (const auto code : std::as_const(chord))
        type(XCB_KEY_PRESS, code);
    std::for_each(
        chord.crbegin(), chord.crend(), [&type](xcb_keycode_t code) { type(XCB_KEY_RELEASE, code); });
    for (const auto code : std::as_const(lifted))
        type(XCB_KEY_PRESS, code);
    xcb_flush(connection);
}

} // namespace nimbarrow
