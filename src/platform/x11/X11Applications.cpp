#include "platform/x11/X11Applications.h"

#include "platform/linux/DesktopEntries.h"
#include "platform/x11/X11Properties.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr auto fromPager = 2;

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

} // namespace

X11Applications::X11Applications()
    : X11Applications(std::make_unique<DesktopEntries>())
{
}

X11Applications::X11Applications(std::unique_ptr<DesktopEntries> entries)
    : m_entries(std::move(entries))
{
}

X11Applications::~X11Applications() = default;

std::optional<RunningApplication> X11Applications::frontmost() const
{
    const auto window = activeWindow();
    if (!window)
        return {};
    if (const auto entry = entryOf(*window))
        return RunningApplication { entry->name, entry->id, *window };
    // The class is the second of two names that end with a zero byte each.
    const auto names = textOf(*window, "WM_CLASS").split('\0');
    if (names.size() < 2 || names[1].isEmpty())
        return {};
    return RunningApplication { QString::fromUtf8(names[1]), {}, *window };
}

void X11Applications::activate(const RunningApplication& application)
{
    auto* connection = x11::qtConnection();
    const auto root = x11::rootWindow(connection);
    if (root == XCB_NONE || application.handle == 0)
        return;
    xcb_client_message_event_t event {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = static_cast<xcb_window_t>(application.handle);
    event.type = x11::atom(connection, "_NET_ACTIVE_WINDOW");
    // Window managers keep a program from taking the focus for itself, but not the user's own tools.
    event.data.data32[0] = fromPager;
    event.data.data32[1] = x11::serverTime();
    const auto mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    xcb_send_event(connection, 0, root, mask, reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

bool X11Applications::isTerminalInFront() const
{
    const auto window = activeWindow();
    const auto entry = window ? entryOf(*window) : std::nullopt;
    return entry && entry->categories.contains("TerminalEmulator"_L1);
}

std::optional<DesktopEntry> X11Applications::entryOf(quint32 window) const
{
    if (const auto id = QString::fromUtf8(textOf(window, "_GTK_APPLICATION_ID")); !id.isEmpty()) {
        if (auto entry = m_entries->byId(id))
            return entry;
    }
    if (const auto path = QString::fromUtf8(textOf(window, "_BAMF_DESKTOP_FILE")); !path.isEmpty()) {
        if (auto entry = m_entries->byId(path.section(u'/', -1)))
            return entry;
    }
    // The class says which program it is; the instance before it may have been given by whoever started it.
    const auto names = textOf(window, "WM_CLASS").split('\0');
    for (const auto index : { 1, 0 }) {
        if (const auto name = QString::fromUtf8(names.value(index)); !name.isEmpty()) {
            if (auto entry = m_entries->byWindowClass(name))
                return entry;
        }
    }
    return {};
}

} // namespace nimbarrow
