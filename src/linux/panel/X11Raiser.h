#pragma once

#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <QTimer>

#include <xcb/xcb.h>

class QWindow;

namespace nimbarrow {

class X11Cover;

/// Keeps a window above those that the window manager puts on top of it, such as full-screen ones. Raises a
/// few times a second at most, so that two windows of this kind do not fight for ever.
class X11Raiser final : public QAbstractNativeEventFilter {
public:
    /// The window exists at the server already. It is never raised above the cover, which outlives this.
    X11Raiser(xcb_connection_t* connection, QWindow& window, X11Cover& cover);
    ~X11Raiser() override;
    Q_DISABLE_COPY_MOVE(X11Raiser)

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    void raise();

    xcb_connection_t* m_connection;
    QWindow& m_window;
    X11Cover& m_cover;
    xcb_window_t m_id;
    xcb_atom_t m_stacking;
    xcb_atom_t m_active;
    int m_count = 0;
    QElapsedTimer m_since;
    QTimer m_later;
};

} // namespace nimbarrow
