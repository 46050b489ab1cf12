#include "notch/ControlFocus.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace nimbarrow {

ControlFocus::ControlFocus(QQuickWindow& window, QObject* parent)
    : QObject(parent)
    , m_window(window)
{
    connect(&window, &QQuickWindow::activeFocusItemChanged, this, &ControlFocus::follow);
}

void ControlFocus::drop()
{
    // A window that has lost the keyboard still remembers its item, and gives it the focus again later.
    auto* const item = m_window.contentItem()->scopedFocusItem();
    if (item && !item->isFocusScope())
        item->setFocus(false);
}

void ControlFocus::follow()
{
    if (m_control)
        disconnect(m_control, nullptr, this, nullptr);
    auto* const item = m_window.activeFocusItem();
    m_control = item == m_window.contentItem() ? nullptr : item;
    if (!m_control)
        return;
    connect(m_control, &QQuickItem::visibleChanged, this, &ControlFocus::drop);
    Q_EMIT reached();
}

} // namespace nimbarrow
