#include "linux/display/X11Properties.h"

#include <QGuiApplication>

#include <cstring>

namespace nimbarrow::x11 {
namespace {

constexpr uint32_t lengthLimit = 16 * 1024;

int parsedScreenNumber()
{
    auto number = 0;
    char* host = nullptr;
    auto display = 0;
    // Without a number in DISPLAY it is the first screen.
    if (xcb_parse_display(nullptr, &host, &display, &number) != 0)
        std::free(host);
    return number;
}

} // namespace

Connection connect()
{
    return { xcb_connect(nullptr, nullptr), &xcb_disconnect };
}

xcb_connection_t* qtConnection()
{
    const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return application == nullptr ? nullptr : application->connection();
}

int defaultScreenNumber()
{
    static const auto number = parsedScreenNumber();
    return number;
}

xcb_window_t rootWindow(xcb_connection_t* connection)
{
    if (connection == nullptr || xcb_connection_has_error(connection) != 0)
        return XCB_NONE;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (auto number = defaultScreenNumber(); number > 0 && screen.rem > 1; --number)
        xcb_screen_next(&screen);
    return screen.data->root;
}

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QByteArray property(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name)
{
    const auto cookie = xcb_get_property(connection, 0, window, name, XCB_ATOM_ANY, 0, lengthLimit);
    xcb_generic_error_t* error = nullptr;
    const auto reply = owned(xcb_get_property_reply(connection, cookie, &error));
    const auto windowIsGone = owned(error);
    if (!reply)
        return {};
    return { static_cast<const char*>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()) };
}

std::optional<xcb_window_t> windowProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name)
{
    const auto value = property(connection, window, name);
    xcb_window_t result = XCB_NONE;
    if (value.size() >= qsizetype(sizeof result))
        std::memcpy(&result, value.constData(), sizeof result);
    if (result == XCB_NONE)
        return {};
    return result;
}

Owned<xcb_query_pointer_reply_t> pointer(xcb_connection_t* connection)
{
    const auto root = rootWindow(connection);
    if (root == XCB_NONE)
        return {};
    return owned(xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr));
}

void addEventMask(xcb_connection_t* connection, xcb_window_t window, uint32_t mask)
{
    const auto cookie = xcb_get_window_attributes(connection, window);
    const auto attributes = owned(xcb_get_window_attributes_reply(connection, cookie, nullptr));
    if (!attributes)
        return;
    const auto wider = attributes->your_event_mask | mask;
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &wider);
}

uint8_t majorOpcode(xcb_connection_t* connection, xcb_extension_t* extension)
{
    const auto* data = xcb_get_extension_data(connection, extension);
    return data != nullptr && data->present != 0 ? data->major_opcode : uint8_t(0);
}

xcb_timestamp_t serverTime()
{
    // Qt reads its connection on a thread, so only a connection of our own can be waited on.
    const auto connection = connect();
    const auto root = rootWindow(connection.get());
    if (root == XCB_NONE)
        return XCB_CURRENT_TIME;
    const auto window = xcb_generate_id(connection.get());
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.get(), 0, window, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    // Adding nothing to a property is the protocol's way to ask for the time.
    xcb_change_property(
        connection.get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(connection.get());
    while (const auto event = owned(xcb_wait_for_event(connection.get()))) {
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
    }
    return XCB_CURRENT_TIME;
}

} // namespace nimbarrow::x11
