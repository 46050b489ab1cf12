#pragma once

#include <QList>

#include <optional>
#include <xcb/xcb.h>

namespace nimbarrow::x11 {

/// A window of a program, and the process that it says it belongs to.
struct Client {
    xcb_window_t window = XCB_NONE;
    /// 0 where it does not say.
    qint32 pid = 0;
};

/// The windows of all programs as the window manager lists them, the topmost last. One round trip for all.
[[nodiscard]] QList<Client> clients(xcb_connection_t* connection);

/// The topmost window of a process.
[[nodiscard]] std::optional<xcb_window_t> windowOf(const QList<Client>& clients, qint32 pid);

} // namespace nimbarrow::x11
