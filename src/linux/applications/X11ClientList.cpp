#include "linux/applications/X11ClientList.h"

#include "linux/display/X11Properties.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace nimbarrow::x11 {

QList<Client> clients(xcb_connection_t* connection)
{
    const auto root = rootWindow(connection);
    if (root == XCB_NONE)
        return {};
    auto bytes = property(connection, root, atom(connection, "_NET_CLIENT_LIST_STACKING"));
    if (bytes.isEmpty())
        bytes = property(connection, root, atom(connection, "_NET_CLIENT_LIST"));
    std::vector<xcb_window_t> windows(static_cast<std::size_t>(bytes.size()) / sizeof(xcb_window_t));
    if (!windows.empty())
        std::memcpy(windows.data(), bytes.constData(), windows.size() * sizeof(xcb_window_t));

    const auto pidProperty = atom(connection, "_NET_WM_PID");
    std::vector<xcb_get_property_cookie_t> asked;
    for (const auto window : windows)
        asked.push_back(xcb_get_property(connection, 0, window, pidProperty, XCB_ATOM_CARDINAL, 0, 1));

    QList<Client> result;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        Client client { windows[i] };
        xcb_generic_error_t* error = nullptr;
        const auto reply = owned(xcb_get_property_reply(connection, asked[i], &error));
        const auto windowIsGone = owned(error);
        if (reply && xcb_get_property_value_length(reply.get()) == sizeof client.pid)
            std::memcpy(&client.pid, xcb_get_property_value(reply.get()), sizeof client.pid);
        result << client;
    }
    return result;
}

std::optional<xcb_window_t> windowOf(const QList<Client>& clients, qint32 pid)
{
    const auto topmost = std::find_if(clients.crbegin(), clients.crend(),
        [pid](const Client& client) { return pid > 0 && client.pid == pid; });
    if (topmost == clients.crend())
        return {};
    return topmost->window;
}

} // namespace nimbarrow::x11
