#pragma once

#include <QByteArray>

#include <cstdlib>
#include <memory>
#include <optional>
#include <xcb/xcb.h>

namespace nimbarrow::x11 {

/// Frees what an xcb call has allocated.
struct Free {
    void operator()(void* pointer) const { std::free(pointer); }
};

/// A reply or an error of the server; null when there is none.
template <typename Type>
using Owned = std::unique_ptr<Type, Free>;

template <typename Type>
[[nodiscard]] Owned<Type> owned(Type* pointer)
{
    return Owned<Type>(pointer);
}

/// A connection of one's own; a broken one when there is no server.
using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;
[[nodiscard]] Connection connect();

/// The connection that Qt runs its windows on, whose events reach native event filters. Null when the program
/// runs on another windowing system.
[[nodiscard]] xcb_connection_t* qtConnection();

/// The root window of the screen that the session names; 0 on a broken connection.
[[nodiscard]] xcb_window_t rootWindow(xcb_connection_t* connection);
[[nodiscard]] int defaultScreenNumber();

/// Asks the server each time: keep the answer where it is used often.
[[nodiscard]] xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name);

/// The value of a property in its format's units, 64 KB at most; empty when the window or the property is
/// gone.
[[nodiscard]] QByteArray property(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name);

/// The window that a property names; none for 0.
[[nodiscard]] std::optional<xcb_window_t> windowProperty(
    xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name);

/// The pointer as it is now: place, buttons, and the window right below the root that it is on. Null on a
/// broken connection.
[[nodiscard]] Owned<xcb_query_pointer_reply_t> pointer(xcb_connection_t* connection);

/// Adds to the events that this connection gets of a window.
void addEventMask(xcb_connection_t* connection, xcb_window_t window, uint32_t mask);

/// What the server's events and requests of an extension are marked with; 0 when it does not have it.
[[nodiscard]] uint8_t majorOpcode(xcb_connection_t* connection, xcb_extension_t* extension);

/// The server's time now, for requests that must not carry "any time". One round trip.
[[nodiscard]] xcb_timestamp_t serverTime();

} // namespace nimbarrow::x11
