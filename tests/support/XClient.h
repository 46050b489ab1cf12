#pragma once

#include <QByteArray>
#include <QList>
#include <QPoint>
#include <QRect>

#include <memory>
#include <utility>
#include <xcb/xcb.h>

namespace nimbarrow {

/// Another program with one window, as the server and the window manager see it, and the user's hands.
class XClient {
public:
    /// `windowClass` is both the name and the class of the window.
    explicit XClient(const QByteArray& windowClass, QRect geometry = { 100, 300, 400, 300 });

    void map(bool fullScreen = false);
    /// Past the window manager, as screen lockers and menus do.
    void mapUnmanaged();
    /// Nothing of it takes clicks, or everything again.
    void setClickThrough(bool through);
    void unmap();
    void destroy();
    /// Puts the window on top, and says so as a window manager does; for a test without one.
    void restack();
    /// Without coming to the front.
    void takeFocus() const;
    [[nodiscard]] xcb_window_t window() const { return m_window; }
    [[nodiscard]] bool hasFocus() const;
    [[nodiscard]] bool isActive() const;

    /// What has arrived so far: key codes with the modifiers of that moment, in order; presses positive,
    /// releases negative. Without Mod5, which stands for the second layout here.
    [[nodiscard]] const QList<std::pair<int, int>>& keys();
    [[nodiscard]] int clicks();
    void forgetKeys();

    // The user's hands; they work on whatever is there, not on this window alone.
    void press(int keyCode) const { fake(XCB_KEY_PRESS, keyCode); }
    void release(int keyCode) const { fake(XCB_KEY_RELEASE, keyCode); }
    void type(const QList<int>& chord) const;
    void movePointer(QPoint to) const;
    void button(bool down) const { fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, 1); }
    void click(QPoint at) const;
    [[nodiscard]] bool isDown(int keyCode) const;
    void setGroup(int group) const;

    [[nodiscard]] xcb_window_t focus() const;
    /// The top-level window that a click at this place reaches.
    [[nodiscard]] xcb_window_t topAt(QPoint place) const;
    [[nodiscard]] quint32 pixelAt(QPoint place) const;
    [[nodiscard]] xcb_window_t rootWindowProperty(const QByteArray& name) const;
    [[nodiscard]] bool exists(xcb_window_t window) const;
    [[nodiscard]] bool isComposited() const;
    /// False when another program holds it.
    [[nodiscard]] bool grab(int keyCode, int modifiers) const;

private:
    void fake(int event, int detail) const;
    void readEvents();
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name) const;

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
    QList<std::pair<int, int>> m_keys;
    int m_clicks = 0;
};

} // namespace nimbarrow
