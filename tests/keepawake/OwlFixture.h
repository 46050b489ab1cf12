#pragma once

#include "keepawake/KeepAwake.h"
#include "keepawake/OwlMotion.h"
#include "support/FakePowerAssertions.h"
#include "support/ManualTime.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

namespace nimbarrow {

/// The button in the header of an otherwise empty surface, in a window.
class OwlFixture {
public:
    OwlFixture()
    {
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&m_engine);
        component.setData(R"(
            import QtQuick
            import Nimbarrow.KeepAwake
            import Nimbarrow.Style

            Item {
                id: root

                required property KeepAwake keepAwake
                required property OwlMotion motion
                required property bool active
                property int clicksBelow: 0

                width: 460
                height: 240

                Line {
                    text: "Nimbarrow"
                    font.weight: Font.DemiBold
                    x: Theme.insetX
                    height: 32
                }

                KeepAwakeButton {
                    active: root.active
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.insetX
                    keepAwake: root.keepAwake
                    motion: root.motion
                    y: (32 - height) / 2
                    surface: root
                }

                Rectangle {
                    anchors.fill: parent
                    anchors.margins: 29
                    anchors.topMargin: 47
                    color: Theme.restingFill
                    radius: 7

                    TapHandler {
                        onTapped: ++root.clicksBelow
                    }
                }

                HelpLayer {
                    anchors.fill: parent
                }
            })",
            QUrl());
        auto* const made = component.createWithInitialProperties({
            { QStringLiteral("keepAwake"), QVariant::fromValue(&keepAwake) },
            { QStringLiteral("motion"), QVariant::fromValue(&motion) },
            { QStringLiteral("active"), true },
        });
        root.reset(qobject_cast<QQuickItem*>(made));
        if (!root)
            qFatal("%s", qPrintable(component.errorString()));
        root->setParentItem(window.contentItem());
        window.setColor(Qt::black);
        window.resize(460, 240);
        window.show();
        if (!QTest::qWaitForWindowExposed(&window))
            qFatal("The window does not show.");
    }

    /// The items of a QML type that are to be seen, in the order of drawing.
    [[nodiscard]] QList<QQuickItem*> find(const char* type) const
    {
        QList<QQuickItem*> found;
        collect(window.contentItem(), QByteArray(type) + "_QMLTYPE_", found);
        return found;
    }

    void click(const QQuickItem* item)
    {
        const auto place = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
        QTest::mouseClick(&window, Qt::LeftButton, {}, place);
    }

    void clickOwl() { click(find("OwlButton").value(0)); }

    FakePowerAssertions power;
    ManualTime time;
    KeepAwake keepAwake { power, time, time };
    OwlMotion motion { time, time, [] { return 0.5; } };
    QQuickWindow window;

private:
    QQmlEngine m_engine;

public:
    std::unique_ptr<QQuickItem> root;

private:
    static void collect(QQuickItem* item, const QByteArray& type, QList<QQuickItem*>& found)
    {
        if (!item->isVisible() || item->opacity() <= 0)
            return;
        if (QByteArrayView(item->metaObject()->className()).startsWith(type))
            found << item;
        for (auto* const child : item->childItems())
            collect(child, type, found);
    }
};

} // namespace nimbarrow
