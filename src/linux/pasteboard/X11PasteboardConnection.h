#pragma once

#include "linux/display/X11Properties.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <xcb/xcb.h>

namespace nimbarrow {

/// The pasteboard's own connection to the X server. May be made on one thread and used on another.
class X11PasteboardConnection {
public:
    template <typename T>
    using Reply = x11::Owned<T>;

    /// What one property held.
    struct Property {
        xcb_atom_t type = XCB_ATOM_NONE;
        int format = 0;
        QByteArray bytes;
        bool cut = false;
    };

    explicit X11PasteboardConnection(const QByteArray& display);
    ~X11PasteboardConnection();
    Q_DISABLE_COPY_MOVE(X11PasteboardConnection)

    /// False when there is no server, when it lacks XFixes, and after the connection was lost.
    [[nodiscard]] bool works() const;
    [[nodiscard]] xcb_connection_t* get() const { return m_connection; }

    /// The event number of the selection's change of owner.
    [[nodiscard]] int ownerChangeEvent() const { return m_xfixesEvent; }

    [[nodiscard]] xcb_atom_t atom(QByteArrayView name);

    /// The names of the atoms, in order, an empty one for an atom that is none. One round trip for all.
    [[nodiscard]] QStringList names(const QByteArray& atoms);

    /// An invisible window, of which property changes are reported.
    [[nodiscard]] xcb_window_t makeWindow();

    /// Reads at most `room` bytes, then deletes the property in any case.
    [[nodiscard]] Property takeProperty(xcb_window_t window, xcb_atom_t property, qsizetype room);

    /// Returns when the server has done everything that was asked of it.
    void sync();

    void watchOwner(xcb_window_t window, xcb_atom_t selection);

    /// The most bytes that go into one property at once.
    [[nodiscard]] qsizetype chunkBytes() const { return m_chunkBytes; }

private:
    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    int m_xfixesEvent = -1;
    qsizetype m_chunkBytes = 0;
    QHash<QByteArray, xcb_atom_t> m_atoms;
};

} // namespace nimbarrow
