#pragma once

#include "platform/SessionLock.h"

#include <QAbstractNativeEventFilter>
#include <QRect>

#include <xcb/xcb.h>

class QWindow;

namespace nimbarrow {

/// Whether a screen locker, or any other window that fills the screen past the window manager, stands above a
/// window. Windows that let every click through, such as those to draw notes on the screen, are no cover.
class X11Cover final : public SessionLock, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// The window exists at the server already, was never shown, and goes below all others: a locker that was
    /// there before it is one too.
    X11Cover(xcb_connection_t* connection, const QWindow& window);
    ~X11Cover() override;

    [[nodiscard]] bool isLocked() const override { return m_cover != XCB_NONE; }

    /// Asks the server, which may know more than its events have told so far.
    bool isLockedNow();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    /// Whether the event may make a cover of a window, or end one.
    [[nodiscard]] bool isAboutCovers(const xcb_generic_event_t& event) const;
    [[nodiscard]] xcb_window_t find() const;
    [[nodiscard]] bool isCover(xcb_window_t window) const;
    /// Whether the window manager made it, as some do for the frames around windows.
    [[nodiscard]] bool isManagers(xcb_window_t window) const;
    /// The box around what takes clicks of a window, in its own pixels.
    [[nodiscard]] QRect clickable(xcb_window_t window) const;
    /// Whether a frame fills the screen of the panel.
    [[nodiscard]] bool covers(const QRect& frame) const;

    xcb_connection_t* m_connection;
    const QWindow& m_window;
    xcb_window_t m_id;
    xcb_window_t m_root;
    xcb_atom_t m_manager;
    xcb_window_t m_cover = XCB_NONE;
    int m_shapeChanged = -1;
};

} // namespace nimbarrow
