#include "linux/power/X11ScreenSaver.h"

#include "linux/display/X11Properties.h"

#include <xcb/screensaver.h>

namespace nimbarrow::x11 {

namespace {

/// The server counts the suspension for a connection, and forgets it with the connection.
class Suspension final : public Port {
public:
    explicit Suspension(const QByteArray& display)
        : m_connection(xcb_connect(display.isEmpty() ? nullptr : display.constData(), nullptr))
    {
    }
    ~Suspension() override { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(Suspension)

    [[nodiscard]] bool begin() const
    {
        const auto* const extension = xcb_get_extension_data(m_connection, &xcb_screensaver_id);
        if (!extension || !extension->present)
            return false;
        // Of 1.1 on the suspension takes in the display's power management.
        const auto version = owned(xcb_screensaver_query_version_reply(
            m_connection, xcb_screensaver_query_version(m_connection, 1, 1), nullptr));
        if (!version || (version->server_major_version == 1 && version->server_minor_version < 1))
            return false;
        const auto suspended = xcb_screensaver_suspend_checked(m_connection, 1);
        return !owned(xcb_request_check(m_connection, suspended)) && !xcb_connection_has_error(m_connection);
    }

private:
    xcb_connection_t* m_connection;
};

} // namespace

std::unique_ptr<Port> suspendScreenSaver(const QByteArray& display)
{
    auto suspension = std::make_unique<Suspension>(display);
    if (!suspension->begin())
        return nullptr;
    return suspension;
}

} // namespace nimbarrow::x11
