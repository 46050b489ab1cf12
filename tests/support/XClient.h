#pragma once

#include "linux/display/X11Properties.h"

#include <QByteArray>
#include <QList>
#include <QPoint>
#include <QRect>

#include <memory>
#include <utility>
#include <xcb/shape.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace nimbarrow {

/// Another program with one window, as the server and the window manager see it, and the user's hands.
class XClient {
public:
    /// `windowClass` is both the name and the class of the window.
    explicit XClient(const QByteArray& windowClass, QRect geometry = { 100, 300, 400, 300 })
        : m_connection(x11::connect())
        , m_root(x11::rootWindow(m_connection.get()))
        , m_window(xcb_generate_id(m_connection.get()))
    {
        auto* c = m_connection.get();
        const quint32 values[] { 0xffffff,
            XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_BUTTON_PRESS
                | XCB_EVENT_MASK_FOCUS_CHANGE };
        xcb_create_window(c, XCB_COPY_FROM_PARENT, m_window, m_root, qint16(geometry.x()),
            qint16(geometry.y()), quint16(geometry.width()), quint16(geometry.height()), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
            values);
        const auto names = windowClass + '\0' + windowClass + '\0';
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
            quint32(names.size()), names.constData());
        // Takes input, normal state.
        const quint32 hints[9] { 3, 1, 1 };
        xcb_change_property(
            c, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, 9, hints);
    }

    void map(bool fullScreen = false)
    {
        auto* c = m_connection.get();
        if (fullScreen) {
            const auto state = atom("_NET_WM_STATE_FULLSCREEN");
            xcb_change_property(
                c, XCB_PROP_MODE_REPLACE, m_window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1, &state);
        }
        xcb_map_window(c, m_window);
        xcb_flush(c);
    }

    /// Past the window manager, as screen lockers and menus do.
    void mapUnmanaged()
    {
        const quint32 past = 1;
        xcb_change_window_attributes(m_connection.get(), m_window, XCB_CW_OVERRIDE_REDIRECT, &past);
        xcb_map_window(m_connection.get(), m_window);
        xcb_flush(m_connection.get());
    }

    /// Nothing of it takes clicks, or everything again.
    void setClickThrough(bool through)
    {
        auto* c = m_connection.get();
        if (through)
            xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, 0, m_window, 0, 0, 0, nullptr);
        else
            xcb_shape_mask(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, m_window, 0, 0, XCB_PIXMAP_NONE);
        xcb_flush(c);
    }

    void unmap()
    {
        xcb_unmap_window(m_connection.get(), m_window);
        xcb_flush(m_connection.get());
    }

    void destroy()
    {
        xcb_destroy_window(m_connection.get(), m_window);
        xcb_flush(m_connection.get());
    }

    /// Puts the window on top, and says so as a window manager does; for a test without one.
    void restack()
    {
        auto* c = m_connection.get();
        const quint32 above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(c, m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, m_root, atom("_NET_CLIENT_LIST_STACKING"),
            XCB_ATOM_WINDOW, 32, 1, &m_window);
        xcb_flush(c);
    }

    /// Without coming to the front.
    void takeFocus() const
    {
        xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
        xcb_flush(m_connection.get());
    }

    [[nodiscard]] xcb_window_t window() const { return m_window; }
    [[nodiscard]] bool hasFocus() const { return focus() == m_window; }

    [[nodiscard]] bool isActive() const
    {
        return rootWindowProperty("_NET_ACTIVE_WINDOW") == m_window && hasFocus();
    }

    /// What has arrived so far: key codes with the modifiers of that moment, in order; presses positive,
    /// releases negative. Without Mod5, which stands for the second layout here.
    [[nodiscard]] const QList<std::pair<int, int>>& keys()
    {
        readEvents();
        return m_keys;
    }

    [[nodiscard]] int clicks()
    {
        readEvents();
        return m_clicks;
    }

    void forgetKeys()
    {
        readEvents();
        m_keys.clear();
    }

    // The user's hands; they work on whatever is there, not on this window alone.
    void press(int keyCode) const { fake(XCB_KEY_PRESS, keyCode); }
    void release(int keyCode) const { fake(XCB_KEY_RELEASE, keyCode); }
    void type(const QList<int>& chord) const
    {
        for (const auto code : chord)
            press(code);
        for (auto code = chord.crbegin(); code != chord.crend(); ++code)
            release(*code);
    }

    void movePointer(QPoint to) const
    {
        xcb_test_fake_input(m_connection.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_root,
            qint16(to.x()), qint16(to.y()), 0);
        xcb_flush(m_connection.get());
    }

    void button(bool down) const { fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, 1); }
    void click(QPoint at) const
    {
        movePointer(at);
        button(true);
        button(false);
    }

    [[nodiscard]] bool isDown(int keyCode) const
    {
        auto* c = m_connection.get();
        const auto map = x11::owned(xcb_query_keymap_reply(c, xcb_query_keymap(c), nullptr));
        return map && (map->keys[keyCode / 8] & (1 << (keyCode % 8))) != 0;
    }

    void setGroup(int group) const
    {
        auto* c = m_connection.get();
        xcb_discard_reply(c, xcb_xkb_use_extension(c, 1, 0).sequence);
        xcb_xkb_latch_lock_state(c, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, quint8(group), 0, 0, 0);
        xcb_flush(c);
    }

    [[nodiscard]] xcb_window_t focus() const
    {
        auto* c = m_connection.get();
        const auto reply = x11::owned(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
        return reply ? reply->focus : 0U;
    }

    /// The top-level window that a click at this place reaches.
    [[nodiscard]] xcb_window_t topAt(QPoint place) const
    {
        auto* c = m_connection.get();
        const auto cookie
            = xcb_translate_coordinates(c, m_root, m_root, qint16(place.x()), qint16(place.y()));
        const auto reply = x11::owned(xcb_translate_coordinates_reply(c, cookie, nullptr));
        return reply ? reply->child : 0U;
    }

    [[nodiscard]] quint32 pixelAt(QPoint place) const
    {
        auto* c = m_connection.get();
        const auto cookie = xcb_get_image(
            c, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, qint16(place.x()), qint16(place.y()), 1, 1, ~0U);
        const auto reply = x11::owned(xcb_get_image_reply(c, cookie, nullptr));
        return reply ? *reinterpret_cast<const quint32*>(xcb_get_image_data(reply.get())) & 0xffffff : 0U;
    }

    [[nodiscard]] xcb_window_t rootWindowProperty(const QByteArray& name) const
    {
        return x11::windowProperty(m_connection.get(), m_root, atom(name)).value_or(0);
    }

    [[nodiscard]] bool exists(xcb_window_t window) const
    {
        auto* c = m_connection.get();
        xcb_generic_error_t* error = nullptr;
        const auto reply
            = x11::owned(xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), &error));
        const auto isGone = x11::owned(error);
        return reply != nullptr;
    }

    [[nodiscard]] bool isComposited() const
    {
        auto* c = m_connection.get();
        const auto cookie = xcb_get_selection_owner(c, atom("_NET_WM_CM_S0"));
        const auto reply = x11::owned(xcb_get_selection_owner_reply(c, cookie, nullptr));
        return reply && reply->owner != 0;
    }

    /// False when another program holds it.
    [[nodiscard]] bool grab(int keyCode, int modifiers) const
    {
        auto* c = m_connection.get();
        const auto cookie = xcb_grab_key_checked(c, 1, m_root, quint16(modifiers), xcb_keycode_t(keyCode),
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        return x11::owned(xcb_request_check(c, cookie)) == nullptr;
    }

private:
    void fake(int event, int detail) const
    {
        xcb_test_fake_input(
            m_connection.get(), quint8(event), quint8(detail), XCB_CURRENT_TIME, m_root, 0, 0, 0);
        xcb_flush(m_connection.get());
    }

    void readEvents()
    {
        while (const auto event = x11::owned(xcb_poll_for_event(m_connection.get()))) {
            const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
            switch (event->response_type & 0x7f) {
            case XCB_KEY_PRESS: m_keys << std::pair(int(key->detail), int(key->state & 0x7f)); break;
            case XCB_KEY_RELEASE: m_keys << std::pair(-int(key->detail), int(key->state & 0x7f)); break;
            case XCB_BUTTON_PRESS: ++m_clicks; break;
            default: break;
            }
        }
    }

    [[nodiscard]] xcb_atom_t atom(const QByteArray& name) const
    {
        return x11::atom(m_connection.get(), name);
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
    QList<std::pair<int, int>> m_keys;
    int m_clicks = 0;
};

} // namespace nimbarrow
