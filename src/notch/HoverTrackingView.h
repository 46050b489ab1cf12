#pragma once

#include "platform/DropReader.h"

#include <QQuickItem>
#include <qqmlintegration.h>

#include <functional>

namespace nimbarrow {

/// Fills the panel and tells when the pointer enters and leaves it, and what is dragged over it and dropped.
class HoverTrackingView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit HoverTrackingView(QQuickItem* parent = nullptr);

    /// Without a reader nothing is accepted. It must outlive the view.
    void setDropReader(const DropReader& reader) { m_dropReader = &reader; }

    std::function<void()> onEnter;
    std::function<void()> onExit;
    std::function<void()> onDragEntered;
    std::function<void()> onDragExited;
    std::function<void(const PasteboardContent&)> onDrop;

protected:
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] bool isAcceptable(const QDropEvent& event) const;

    const DropReader* m_dropReader = nullptr;
};

} // namespace nimbarrow
