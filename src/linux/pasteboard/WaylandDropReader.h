#pragma once

#include "linux/pasteboard/PasteboardSnapshot.h"
#include "linux/pasteboard/WaylandPasteboard.h"
#include "platform/DropReader.h"

#include <QPointF>
#include <QPointer>
#include <QStringList>

#include <memory>

class QDropEvent;
class QWindow;
struct wl_data_device;
struct wl_data_device_manager;
struct wl_data_offer;
struct wl_seat;

namespace nimbarrow {

/// Reads what is dropped on the program's surfaces before they learn of the drop: Qt would read while the
/// main thread waits for the other program. It listens to drags on Qt's connection beside Qt. A compositor
/// that tells only one listener leaves it to Qt, which gives up a second after the last byte. Main thread.
class WaylandDropReader final : public QObject, public DropReader {
public:
    /// The pasteboard's thread does the reading; it must outlive the reader.
    explicit WaylandDropReader(WaylandPasteboard& pasteboard);
    ~WaylandDropReader() override;
    Q_DISABLE_COPY_MOVE(WaylandDropReader)

    [[nodiscard]] QStringList types(const QMimeData& drag) const override;
    [[nodiscard]] std::unique_ptr<PasteboardContent> read(const QMimeData& drop) const override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Offer;

    void listenTo(wl_data_offer* proxy);
    void enter(wl_data_offer* proxy);
    void holdBack(const QDropEvent& drop, QWindow& window);

    WaylandPasteboard& m_pasteboard;
    wl_seat* m_seat = nullptr;
    wl_data_device_manager* m_manager = nullptr;
    wl_data_device* m_device = nullptr;
    /// The newest that the compositor has told of.
    std::unique_ptr<Offer> m_incoming;
    /// Of the drag that is over a surface of ours, or was the last to be.
    std::unique_ptr<Offer> m_drag;
    bool m_isOver = false;
    /// From a drop on until it has been read.
    bool m_isHeld = false;
    /// Counts drags and drops: another drag makes a drop that is being read one of the past.
    int m_drags = 0;
    std::optional<PasteboardSnapshot> m_content;
};

} // namespace nimbarrow
