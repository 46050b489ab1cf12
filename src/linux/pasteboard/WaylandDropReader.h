#pragma once

#include "linux/pasteboard/WaylandPasteboard.h"
#include "platform/DropReader.h"

#include <QObject>
#include <QStringList>

#include <map>
#include <memory>

struct wl_data_device;
struct wl_data_device_manager;
struct wl_data_offer;
struct wl_seat;

namespace nimbarrow {

/// Reads what is dropped on the program's surfaces: Qt would read while the main thread waits for the other
/// program. It listens to drags on Qt's connection beside Qt. A compositor that tells only one listener
/// leaves it to Qt, which gives up a second after the last byte.
class WaylandDropReader final : public QObject, public DropReader {
public:
    /// The pasteboard's thread does the reading; it must outlive the reader.
    explicit WaylandDropReader(WaylandPasteboard& pasteboard);
    ~WaylandDropReader() override;
    Q_DISABLE_COPY_MOVE(WaylandDropReader)

    [[nodiscard]] QStringList types(const QMimeData& drag) const override;
    void read(const QMimeData& drop, const Done& done) override;

private:
    struct Offer;

    void listenTo(wl_data_offer* proxy);
    void enter(wl_data_offer* proxy);

    WaylandPasteboard& m_pasteboard;
    wl_seat* m_seat = nullptr;
    wl_data_device_manager* m_manager = nullptr;
    wl_data_device* m_device = nullptr;
    /// The newest that the compositor has told of.
    std::unique_ptr<Offer> m_incoming;
    /// Of the drag that is over a surface of ours, or was the last to be there and was not dropped.
    std::unique_ptr<Offer> m_drag;
    bool m_isOver = false;
    /// What is being read, by its number: a compositor may take the end of an offer for the end of the drop.
    std::map<int, std::unique_ptr<Offer>> m_dropped;
    int m_drops = 0;
};

} // namespace nimbarrow
