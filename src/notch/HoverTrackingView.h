#pragma once

#include "platform/DropReader.h"

#include <QQuickItem>
#include <qqmlintegration.h>

#include <functional>

namespace nimbarrow {

/// Fills the panel and tells when the pointer is over it, and what is dragged over it and dropped.
class HoverTrackingView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit HoverTrackingView(QQuickItem* parent = nullptr);

    /// Without a reader nothing is accepted. It must outlive the view.
    void setDropReader(DropReader& reader) { m_dropReader = &reader; }

    /// The pointer has come over the view, or has moved there; or the view has come under the pointer.
    std::function<void()> onHover;
    std::function<void()> onExit;
    std::function<void()> onDragEntered;
    std::function<void()> onDragExited;
    /// Comes when what was dropped has been read, and ends the drag. Where the next one is over the view by
    /// then, that one is told of anew.
    DropReader::Done onDrop;

protected:
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] bool isAcceptable(const QDropEvent& event) const;

    DropReader* m_dropReader = nullptr;
    bool m_isDraggedOver = false;
};

} // namespace nimbarrow
