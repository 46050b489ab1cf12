#pragma once

#include <QAbstractNativeEventFilter>
#include <QList>
#include <QRect>

#include <optional>
#include <xcb/xcb.h>

namespace nimbarrow {

/// Limits a window to an outline: its clicks always, and its picture too while nobody composites, because
/// without a compositing manager what is transparent shows as black.
class X11WindowShape final : public QAbstractNativeEventFilter {
public:
    X11WindowShape(xcb_connection_t* connection, xcb_window_t window);
    ~X11WindowShape() override;
    Q_DISABLE_COPY_MOVE(X11WindowShape)

    /// In device pixels, sorted by rows.
    void setRows(const QList<QRect>& rows);

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    void follow();
    [[nodiscard]] bool isComposited() const;
    void apply(uint8_t kind, const QList<xcb_rectangle_t>& rectangles);
    void applyBounding();

    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_compositor = XCB_ATOM_NONE;
    std::optional<uint8_t> m_ownerChanged;
    bool m_isComposited = false;
    std::optional<QList<xcb_rectangle_t>> m_rows;
};

} // namespace nimbarrow
