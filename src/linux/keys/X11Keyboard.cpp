#include "linux/keys/X11Keyboard.h"

#include "linux/display/X11Properties.h"
#include "linux/keys/XkbKeymap.h"

#include <algorithm>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

// One of its fields is named like a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace nimbarrow {
namespace {

struct Place {
    const char* name;
    Key key;
};

constexpr std::array places {
    Place { "AB03", Key::C },
    Place { "AB04", Key::V },
};

constexpr std::array<xkb_keysym_t, 7> locks { XKB_KEY_Caps_Lock, XKB_KEY_Shift_Lock, XKB_KEY_Scroll_Lock,
    XKB_KEY_ISO_Lock, XKB_KEY_ISO_Level3_Lock, XKB_KEY_ISO_Level5_Lock, XKB_KEY_Num_Lock };

using State = std::unique_ptr<xkb_state, decltype(&xkb_state_unref)>;

} // namespace

void repeatWithoutReleases(xcb_connection_t* connection)
{
    const uint32_t flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto cookie = xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, flag, flag, 0, 0, 0);
    xcb_discard_reply(connection, cookie.sequence);
    xcb_flush(connection);
}

std::optional<int> followKeyboard(xcb_connection_t* connection)
{
    const auto* extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0)
        return {};
    const uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    const uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts, nullptr);
    xcb_flush(connection);
    return extension->first_event;
}

X11Keyboard::X11Keyboard(xcb_connection_t* connection)
{
    if (xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr)
        == 0) {
        return;
    }
    readKeys(connection);
    readModifiers(connection);
}

std::optional<xcb_keycode_t> X11Keyboard::codeOf(Key letter) const
{
    const auto found = std::find(m_letters.cbegin(), m_letters.cend(), letter);
    if (found == m_letters.cend())
        return {};
    return static_cast<xcb_keycode_t>(found.key());
}

std::optional<xcb_keycode_t> X11Keyboard::codeOfModifier(xcb_map_index_t row) const
{
    const auto& codes = m_modifiers.at(row);
    if (codes.isEmpty())
        return {};
    return codes.first();
}

void X11Keyboard::readKeys(xcb_connection_t* connection)
{
    const auto device = xkb_x11_get_core_keyboard_device_id(connection);
    const auto context = xkb::makeContext();
    if (device < 0 || !context)
        return;
    const xkb::Keymap keymap(
        xkb_x11_keymap_new_from_device(context.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS),
        &xkb_keymap_unref);
    if (!keymap)
        return;
    const State state(xkb_x11_state_new_from_device(keymap.get(), connection, device), &xkb_state_unref);

    for (const auto& place : places) {
        const auto code = xkb_keymap_key_by_name(keymap.get(), place.name);
        // The core protocol knows no larger codes.
        if (code != XKB_KEYCODE_INVALID && code <= 255)
            m_letters.insert(code, place.key);
    }

    const auto current
        = state ? xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE) : xkb_layout_index_t(0);
    if (const auto code = xkb::codeTyping(keymap.get(), current, XKB_KEY_v))
        m_codeTypingV = static_cast<xcb_keycode_t>(*code);
    if (!m_codeTypingV)
        m_codeTypingV = codeOf(Key::V);

    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap.get()); code <= 255; ++code) {
        for (const xkb_keysym_t lock : locks) {
            if (!xkb::types(keymap.get(), code, 0, lock))
                continue;
            m_lockCodes << static_cast<xcb_keycode_t>(code);
            if (lock == XKB_KEY_Num_Lock)
                m_numLockCodes << static_cast<xcb_keycode_t>(code);
        }
    }
}

void X11Keyboard::readModifiers(xcb_connection_t* connection)
{
    const auto cookie = xcb_get_modifier_mapping(connection);
    const auto reply = x11::owned(xcb_get_modifier_mapping_reply(connection, cookie, nullptr));
    if (!reply)
        return;
    const auto* codes = xcb_get_modifier_mapping_keycodes(reply.get());
    for (std::size_t row = 0; row < m_modifiers.size(); ++row) {
        for (auto i = 0; i < reply->keycodes_per_modifier; ++i) {
            const auto code = codes[row * reply->keycodes_per_modifier + static_cast<std::size_t>(i)];
            if (code == 0)
                continue;
            m_modifiers[row] << code;
            if (m_numLockCodes.contains(code))
                m_numLockMask = static_cast<uint16_t>(1U << row);
            // Pressing a lock again would switch it over.
            if (row != XCB_MAP_INDEX_LOCK && !m_lockCodes.contains(code)
                && !m_heldModifierCodes.contains(code))
                m_heldModifierCodes << code;
        }
    }
}

} // namespace nimbarrow
