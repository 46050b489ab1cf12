#pragma once

#include "support/PlayerFixture.h"

#include <QBuffer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

namespace nimbarrow {

/// The real column over a player that the test plays, in a window that it fills.
class PlayerColumn {
public:
    static constexpr qint32 pid = 100;

    PlayerColumn()
    {
        player.applications.processes[pid] = { QStringLiteral("Tunes"), QStringLiteral("org.tunes"), 1 };
        player.start();
        view.setColor(Qt::black);
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
        view.setInitialProperties({ { QStringLiteral("player"), QVariant::fromValue(&player.model) } });
        view.resize(150, 172);
        view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Nimbarrow/NowPlaying/NowPlayingColumn.qml")));
        if (!view.rootObject())
            qFatal("The column cannot be made.");
        view.show();
        if (!QTest::qWaitForWindowExposed(&view))
            qFatal("The window does not show.");
    }

    /// The members that are not given are those of a usual track.
    void play(const QJsonObject& members = {})
    {
        QJsonObject state { { QStringLiteral("type"), QStringLiteral("state") },
            { QStringLiteral("pid"), pid }, { QStringLiteral("title"), QStringLiteral("Song") },
            { QStringLiteral("artist"), QStringLiteral("Singer") }, { QStringLiteral("duration"), 200 } };
        for (auto member = members.begin(); member != members.end(); ++member)
            state.insert(member.key(), member.value());
        player.say(state);
        settle();
    }

    /// Until everything that fades or slides has come to rest.
    static void settle() { QTest::qWait(260); }

    /// The first item of a QML type that is to be seen; null when there is none.
    [[nodiscard]] QQuickItem* find(const QByteArray& type) const
    {
        return find(view.contentItem(), [&type](const QQuickItem* item) {
            return QByteArrayView(item->metaObject()->className()).startsWith(type + "_QMLTYPE_");
        });
    }

    [[nodiscard]] QQuickItem* button(const QString& help) const
    {
        return find(view.contentItem(),
            [&help](const QQuickItem* item) { return item->property("help").toString() == help; });
    }

    /// Whether a text is to be seen somewhere.
    [[nodiscard]] bool shows(const QString& text) const
    {
        return find(view.contentItem(), [&text](const QQuickItem* item) {
            return item->inherits("QQuickText") && item->property("text").toString() == text;
        }) != nullptr;
    }

    /// A place in the window, by fractions of an item.
    [[nodiscard]] static QPoint placeIn(const QQuickItem* item, qreal x = 0.5, qreal y = 0.5)
    {
        return item->mapToScene({ item->width() * x, item->height() * y }).toPoint();
    }

    PlayerFixture player;
    QQuickView view;

private:
    template <typename Predicate>
    [[nodiscard]] static QQuickItem* find(QQuickItem* item, const Predicate& isWanted)
    {
        if (!item->isVisible() || item->opacity() <= 0)
            return nullptr;
        if (isWanted(item))
            return item;
        for (auto* const child : item->childItems()) {
            if (auto* const found = find(child, isWanted))
                return found;
        }
        return nullptr;
    }
};

} // namespace nimbarrow
