#pragma once

#include "platform/KeyEvent.h"

#include <QHash>
#include <QList>

#include <array>
#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace nimbarrow {

/// Asks the server to repeat the press of a key that is held without a release before it, as it usually does;
/// the two may arrive apart, and nobody could tell them from a key that is let go. For this connection alone,
/// which has begun to use the keyboard extension.
void repeatWithoutReleases(xcb_connection_t* connection);

/// Asks for an event whenever the keyboard has changed; the kind of that event, or none when the server has
/// nothing to tell it with.
[[nodiscard]] std::optional<int> followKeyboard(xcb_connection_t* connection);

/// The core keyboard as the server has it at one moment: where the letters of shortcuts lie, and what is
/// typed where.
class X11Keyboard {
public:
    /// Knows no keys: what is there before the first reading, and without the keyboard extension.
    X11Keyboard() = default;

    /// A few round trips to the server.
    explicit X11Keyboard(xcb_connection_t* connection);

    /// The letter whose place this is; Key::Other where none is.
    [[nodiscard]] Key letterAt(uint32_t code) const { return m_letters.value(code, Key::Other); }
    /// None for what is no letter.
    [[nodiscard]] std::optional<xcb_keycode_t> codeOf(Key letter) const;

    /// The key that types `v` in the layout in use, else in any layout, else the one where V is on a US
    /// layout.
    [[nodiscard]] std::optional<xcb_keycode_t> codeTypingV() const { return m_codeTypingV; }

    /// One key of a modifier row of the core protocol, such as XCB_MAP_INDEX_CONTROL.
    [[nodiscard]] std::optional<xcb_keycode_t> codeOfModifier(xcb_map_index_t row) const;

    /// Keys that are modifiers while they are down, so without the locks.
    [[nodiscard]] const QList<xcb_keycode_t>& heldModifierCodes() const { return m_heldModifierCodes; }
    [[nodiscard]] uint16_t numLockMask() const { return m_numLockMask; }

    friend bool operator==(const X11Keyboard&, const X11Keyboard&) = default;

private:
    void readKeys(xcb_connection_t* connection);
    void readModifiers(xcb_connection_t* connection);

    QHash<uint32_t, Key> m_letters;
    QList<xcb_keycode_t> m_lockCodes;
    std::array<QList<xcb_keycode_t>, 8> m_modifiers;
    QList<xcb_keycode_t> m_heldModifierCodes;
    QList<xcb_keycode_t> m_numLockCodes;
    std::optional<xcb_keycode_t> m_codeTypingV;
    uint16_t m_numLockMask = XCB_MOD_MASK_2;
};

} // namespace nimbarrow
