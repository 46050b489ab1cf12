#include "linux/applications/X11Applications.h"

#include "linux/applications/DesktopEntries.h"
#include "linux/applications/Processes.h"
#include "linux/applications/X11ClientList.h"
#include "linux/display/X11Properties.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr auto fromPager = 2;
/// How far up from a player the terminal may be that it runs in.
constexpr auto mostAncestors = 8;

std::optional<quint32> activeWindow()
{
    auto* connection = x11::qtConnection();
    const auto root = x11::rootWindow(connection);
    if (root == XCB_NONE)
        return {};
    return x11::windowProperty(connection, root, x11::atom(connection, "_NET_ACTIVE_WINDOW"));
}

QByteArray textOf(quint32 window, const QByteArray& property)
{
    auto* connection = x11::qtConnection();
    return x11::property(connection, window, x11::atom(connection, property));
}

// The class is the second of two names that end with a zero byte each.
QString classOf(quint32 window)
{
    return QString::fromUtf8(textOf(window, "WM_CLASS").split('\0').value(1));
}

} // namespace

X11Applications::X11Applications()
    : X11Applications(std::make_unique<DesktopEntries>())
{
}

X11Applications::X11Applications(std::unique_ptr<DesktopEntries> entries)
    : DesktopApplications(std::move(entries))
{
}

std::optional<RunningApplication> X11Applications::frontmost() const
{
    const auto window = activeWindow();
    return window ? shownBy(*window, entryOf(*window), classOf(*window)) : std::nullopt;
}

std::optional<RunningApplication> X11Applications::withProcess(qint32 pid) const
{
    if (const auto window = x11::windowOf(x11::clients(x11::qtConnection()), pid)) {
        return shownBy(*window, entryOf(*window), classOf(*window))
            .value_or(RunningApplication { {}, {}, *window });
    }
    return DesktopApplications::withProcess(pid);
}

void X11Applications::activate(const RunningApplication& application)
{
    auto* connection = x11::qtConnection();
    const auto root = x11::rootWindow(connection);
    if (root == XCB_NONE || application.handle == 0)
        return;
    const auto process = processOf(application);
    const auto window
        = process ? windowFor(*process) : std::optional(static_cast<quint32>(application.handle));
    if (!window)
        return;
    xcb_client_message_event_t event {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = *window;
    event.type = x11::atom(connection, "_NET_ACTIVE_WINDOW");
    // Window managers keep a program from taking the focus for itself, but not the user's own tools.
    event.data.data32[0] = fromPager;
    event.data.data32[1] = x11::serverTime();
    const auto mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    xcb_send_event(connection, 0, root, mask, reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

std::optional<quint32> X11Applications::windowFor(qint32 pid) const
{
    const auto clients = x11::clients(x11::qtConnection());
    if (const auto own = x11::windowOf(clients, pid))
        return own;
    // In a sandbox a program does not know its process by the number that others know it by.
    if (const auto program = entries().byWindowClass(processes::name(pid))) {
        for (auto client = clients.crbegin(); client != clients.crend(); ++client) {
            if (entryOf(client->window) == program)
                return client->window;
        }
    }
    for (auto above = 0; above < mostAncestors && pid > 1; ++above) {
        pid = processes::parent(pid);
        if (const auto terminal = x11::windowOf(clients, pid))
            return terminal;
    }
    return {};
}

std::optional<DesktopEntry> X11Applications::entryOf(quint32 window) const
{
    if (const auto id = QString::fromUtf8(textOf(window, "_GTK_APPLICATION_ID")); !id.isEmpty()) {
        if (auto entry = entries().byId(id))
            return entry;
    }
    if (const auto path = QString::fromUtf8(textOf(window, "_BAMF_DESKTOP_FILE")); !path.isEmpty()) {
        if (auto entry = entries().byId(path.section(u'/', -1)))
            return entry;
    }
    // The class says which program it is; the instance before it may have been given by whoever started it.
    const auto names = textOf(window, "WM_CLASS").split('\0');
    for (const auto index : { 1, 0 }) {
        if (const auto name = QString::fromUtf8(names.value(index)); !name.isEmpty()) {
            if (auto entry = entries().byWindowClass(name))
                return entry;
        }
    }
    return {};
}

} // namespace nimbarrow
