#pragma once

#include "linux/panel/X11PanelWindow.h"

#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace nimbarrow {

/// A real panel at the middle of a 1512 x 982 screen's top edge, all of one colour.
class TestPanel : public QObject {
public:
    static constexpr quint32 color = 0x10c020;
    static constexpr QPoint middle { 756, 60 };

    TestPanel()
    {
        QQmlComponent content(&m_engine);
        content.setData("import QtQuick\nRectangle { anchors.fill: parent; color: '#10c020' }", {});
        m_content.reset(qobject_cast<QQuickItem*>(content.create()));
        m_content->setParentItem(m_window.contentItem());
        m_port.setFrame({ 556, -120, 400, 120 });
        m_window.installEventFilter(this);
    }

    [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(m_window.winId()); }
    [[nodiscard]] int clicks() const { return m_clicks; }
    [[nodiscard]] X11PanelWindow& port() { return m_port; }
    X11PanelWindow* operator->() { return &m_port; }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_clicks += event->type() == QEvent::MouseButtonPress ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    QQmlEngine m_engine;
    QQuickWindow m_window;
    X11PanelWindow m_port { m_window };
    std::unique_ptr<QQuickItem> m_content;
    int m_clicks = 0;
};

} // namespace nimbarrow
