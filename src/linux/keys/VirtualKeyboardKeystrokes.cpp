#include "linux/keys/VirtualKeyboardKeystrokes.h"

#include "linux/applications/DesktopApplications.h"
#include "linux/display/WaylandRegistry.h"
#include "linux/keys/XkbKeymap.h"

#include <QList>

#include <chrono>
#include <cstring>
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-client.h>
#include <wayland-client-protocol.h>

namespace nimbarrow {
namespace {

using Text = std::unique_ptr<char, decltype(&std::free)>;

uint32_t now()
{
    using namespace std::chrono;
    return static_cast<uint32_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

unsigned maskOf(xkb_keymap* keymap, const char* modifier)
{
    const auto index = xkb_keymap_mod_get_index(keymap, modifier);
    return index == XKB_MOD_INVALID ? 0 : 1U << index;
}

} // namespace

VirtualKeyboardKeystrokes::VirtualKeyboardKeystrokes(
    wl_display* display, const DesktopApplications& applications)
    : m_display(display)
    , m_applications(applications)
{
    const WaylandRegistry registry(display);
    m_seat = registry.bind<wl_seat>(wl_seat_interface, 1);
    auto* const manager
        = registry.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
    if (!manager)
        return;
    // From the start: programs come to know a seat's first keyboard only after a moment.
    if (m_seat)
        m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager, m_seat);
    zwp_virtual_keyboard_manager_v1_destroy(manager);
    if (m_keyboard && !sendKeymap()) {
        zwp_virtual_keyboard_v1_destroy(m_keyboard);
        m_keyboard = nullptr;
    }
}

VirtualKeyboardKeystrokes::~VirtualKeyboardKeystrokes()
{
    if (m_keyboard)
        zwp_virtual_keyboard_v1_destroy(m_keyboard);
    if (m_seat)
        wl_seat_destroy(m_seat);
}

bool VirtualKeyboardKeystrokes::sendKeymap()
{
    const auto context = xkb::makeContext();
    const xkb_rule_names english { nullptr, nullptr, "us", "", "" };
    const xkb::Keymap keymap(
        context ? xkb_keymap_new_from_names(context.get(), &english, XKB_KEYMAP_COMPILE_NO_FLAGS) : nullptr,
        &xkb_keymap_unref);
    const Text text(
        keymap ? xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1) : nullptr, &std::free);
    if (!text)
        return false;
    m_control = maskOf(keymap.get(), XKB_MOD_NAME_CTRL);
    m_shift = maskOf(keymap.get(), XKB_MOD_NAME_SHIFT);
    const auto size = std::strlen(text.get()) + 1;
    const auto file = ::memfd_create("keymap", MFD_CLOEXEC);
    const auto isWritten = file >= 0 && ::write(file, text.get(), size) == static_cast<ssize_t>(size);
    if (isWritten)
        zwp_virtual_keyboard_v1_keymap(
            m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file, static_cast<uint32_t>(size));
    if (file >= 0)
        ::close(file);
    return isWritten;
}

void VirtualKeyboardKeystrokes::postPaste()
{
    if (!m_keyboard)
        return;
    const auto isTerminal = m_applications.isTerminalInFront();
    const auto type = [this](uint32_t key, wl_keyboard_key_state state) {
        zwp_virtual_keyboard_v1_key(m_keyboard, now(), key, state);
    };
    type(KEY_LEFTCTRL, WL_KEYBOARD_KEY_STATE_PRESSED);
    if (isTerminal)
        type(KEY_LEFTSHIFT, WL_KEYBOARD_KEY_STATE_PRESSED);
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, m_control | (isTerminal ? m_shift : 0), 0, 0, 0);
    type(KEY_V, WL_KEYBOARD_KEY_STATE_PRESSED);
    type(KEY_V, WL_KEYBOARD_KEY_STATE_RELEASED);
    if (isTerminal)
        type(KEY_LEFTSHIFT, WL_KEYBOARD_KEY_STATE_RELEASED);
    type(KEY_LEFTCTRL, WL_KEYBOARD_KEY_STATE_RELEASED);
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, 0, 0, 0, 0);
    wl_display_flush(m_display);
}

} // namespace nimbarrow
