#include "linux/pasteboard/X11PasteboardConnection.h"

#include <algorithm>
#include <cstring>
#include <vector>
#include <xcb/xfixes.h>

namespace nimbarrow {

X11PasteboardConnection::X11PasteboardConnection(const QByteArray& display)
{
    int screenNumber = 0;
    m_connection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screenNumber);
    if (xcb_connection_has_error(m_connection))
        return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    // A quarter of a megabyte keeps the server's memory small and loses no speed to round trips.
    const qsizetype request = qsizetype(xcb_get_maximum_request_length(m_connection)) * 4;
    m_chunkBytes = std::min<qsizetype>(request - 64, qsizetype(256) * 1024);

    const auto* extension = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return;
    const Reply<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(m_connection, xcb_xfixes_query_version(m_connection, 1, 0), nullptr));
    if (version)
        m_xfixesEvent = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
}

X11PasteboardConnection::~X11PasteboardConnection()
{
    xcb_disconnect(m_connection);
}

bool X11PasteboardConnection::works() const
{
    return m_xfixesEvent >= 0 && !xcb_connection_has_error(m_connection);
}

void X11PasteboardConnection::sync()
{
    // Any question will do: the server answers in order.
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

xcb_atom_t X11PasteboardConnection::atom(QByteArrayView name)
{
    const auto key = name.toByteArray();
    const auto known = m_atoms.constFind(key);
    if (known != m_atoms.constEnd())
        return *known;
    const auto atom = x11::atom(m_connection, key);
    if (atom != XCB_ATOM_NONE)
        m_atoms.insert(key, atom);
    return atom;
}

QStringList X11PasteboardConnection::names(const QByteArray& atoms)
{
    std::vector<xcb_get_atom_name_cookie_t> cookies;
    for (qsizetype at = 0; at + 4 <= atoms.size(); at += 4) {
        xcb_atom_t atom = XCB_ATOM_NONE;
        std::memcpy(&atom, atoms.constData() + at, sizeof atom);
        cookies.push_back(xcb_get_atom_name(m_connection, atom));
    }
    QStringList names;
    for (const auto cookie : cookies) {
        xcb_generic_error_t* error = nullptr;
        const Reply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(m_connection, cookie, &error));
        const Reply<xcb_generic_error_t> dropped(error);
        names << (reply ? QString::fromUtf8(
                      xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()))
                        : QString());
    }
    return names;
}

xcb_window_t X11PasteboardConnection::makeWindow()
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_root, -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

X11PasteboardConnection::Property X11PasteboardConnection::takeProperty(
    xcb_window_t window, xcb_atom_t property, qsizetype room)
{
    // In pieces: one reply is one block of memory, and an owner may put any amount into one property.
    constexpr qsizetype piece = qsizetype(1) << 20;
    Property taken;
    for (bool more = true; more;) {
        const auto wanted = std::min(piece, room - taken.bytes.size());
        const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection,
            xcb_get_property(m_connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY,
                static_cast<uint32_t>(taken.bytes.size() / 4), static_cast<uint32_t>((wanted + 3) / 4)),
            nullptr));
        if (!reply)
            break;
        taken.type = reply->type;
        taken.format = reply->format;
        const auto length = xcb_get_property_value_length(reply.get());
        taken.bytes.append(static_cast<const char*>(xcb_get_property_value(reply.get())), length);
        more = reply->bytes_after > 0 && length > 0 && taken.bytes.size() < room;
        taken.cut = taken.bytes.size() > room || (reply->bytes_after > 0 && !more);
    }
    taken.bytes.truncate(room);
    xcb_delete_property(m_connection, window, property);
    return taken;
}

void X11PasteboardConnection::watchOwner(xcb_window_t window, xcb_atom_t selection)
{
    xcb_xfixes_select_selection_input(m_connection, window, selection,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    // Whatever is copied after this returns is seen.
    const Reply<xcb_get_selection_owner_reply_t> answered(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, selection), nullptr));
}

} // namespace nimbarrow
