#pragma once

#include "linux/pasteboard/X11Pasteboard.h"
#include "platform/DropReader.h"

#include <QAbstractNativeEventFilter>

#include <optional>

namespace nimbarrow {

/// Reads what is dropped on the program's windows before Qt learns of the drop: Qt would read while the main
/// thread waits for the other program. The drop is held back meanwhile, and the other program knows that it
/// is not over.
class X11DropReader final : public QObject, public DropReader, public QAbstractNativeEventFilter {
public:
    /// The pasteboard's thread does the reading; it must outlive the reader.
    explicit X11DropReader(X11Pasteboard& pasteboard);

    [[nodiscard]] QStringList types(const QMimeData& drag) const override;
    void read(const QMimeData& drop, const Done& done) override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    /// No drag is over the program's windows any more, or another one.
    void forget();
    void holdBack(const xcb_client_message_event_t& drop);
    void deliver();

    X11Pasteboard& m_pasteboard;
    xcb_atom_t m_enter;
    xcb_atom_t m_leave;
    xcb_atom_t m_drop;
    /// What the last drag over a window of ours has said about itself.
    X11Selection::Drag m_drag;
    /// The drop that is being read, and later the one that is on its way again.
    std::optional<xcb_client_message_event_t> m_held;
    bool m_delivering = false;
    PasteboardSnapshot m_content;
};

} // namespace nimbarrow
