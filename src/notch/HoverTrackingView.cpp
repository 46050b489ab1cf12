#include "notch/HoverTrackingView.h"

#include "clipboard/PasteboardCapture.h"

#include <QPointer>

#include <algorithm>

namespace nimbarrow {

namespace {

void call(const std::function<void()>& action)
{
    if (action)
        action();
}

void answer(QDropEvent& event, bool acceptable)
{
    event.setDropAction(acceptable ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(acceptable);
}

} // namespace

HoverTrackingView::HoverTrackingView(QQuickItem* parent)
    : QQuickItem(parent)
{
    setAcceptHoverEvents(true);
    setFlag(ItemAcceptsDrops);
}

// What is dragged out of the surface itself is in the history already.
bool HoverTrackingView::isAcceptable(const QDropEvent& event) const
{
    if (event.source() || !m_dropReader)
        return false;
    const auto types = m_dropReader->types(*event.mimeData());
    return std::ranges::any_of(
        PasteboardCapture::draggedTypes(), [&types](const QString& type) { return types.contains(type); });
}

void HoverTrackingView::hoverEnterEvent(QHoverEvent* event)
{
    QQuickItem::hoverEnterEvent(event);
    call(onHover);
}

void HoverTrackingView::hoverMoveEvent(QHoverEvent* event)
{
    QQuickItem::hoverMoveEvent(event);
    call(onHover);
}

void HoverTrackingView::hoverLeaveEvent(QHoverEvent* event)
{
    QQuickItem::hoverLeaveEvent(event);
    call(onExit);
}

void HoverTrackingView::dragEnterEvent(QDragEnterEvent* event)
{
    const auto acceptable = isAcceptable(*event);
    m_isDraggedOver = acceptable;
    if (acceptable)
        call(onDragEntered);
    answer(*event, acceptable);
}

void HoverTrackingView::dragMoveEvent(QDragMoveEvent* event)
{
    answer(*event, isAcceptable(*event));
}

void HoverTrackingView::dragLeaveEvent(QDragLeaveEvent* event)
{
    QQuickItem::dragLeaveEvent(event);
    m_isDraggedOver = false;
    call(onDragExited);
}

void HoverTrackingView::dropEvent(QDropEvent* event)
{
    const auto acceptable = isAcceptable(*event);
    m_isDraggedOver = false;
    if (acceptable && onDrop) {
        m_dropReader->read(
            *event->mimeData(), [deliver = onDrop, view = QPointer(this)](const PasteboardContent& content) {
                deliver(content);
                if (view && view->m_isDraggedOver)
                    call(view->onDragEntered);
            });
    }
    answer(*event, acceptable);
}

} // namespace nimbarrow
