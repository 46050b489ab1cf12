#include "qml/SurfaceFixture.h"

#include "clipboard/ThumbnailFile.h"
#include "notch/NotchPanel.h"
#include "style/Motion.h"
#include "style/Springs.h"

#include <QBuffer>
#include <QImage>
#include <QQmlEngine>
#include <QTest>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

/// What is to be seen, in the order of drawing.
QList<QQuickItem*> seen(QQuickItem* item)
{
    if (!item->isVisible() || item->opacity() <= 0)
        return {};
    QList<QQuickItem*> found { item };
    for (auto* const child : item->childItems())
        found << seen(child);
    return found;
}

} // namespace

SurfaceFixture::SurfaceFixture(QSizeF notch)
{
    ThumbnailFile::setLoader(&thumbnails);
    actions.onCollapse = [this] { ++collapses; };
    actions.onPreview = [this](const QUuid& item) { state.setPreview(item); };
    state.setGeometry(NotchGeometry { .screenFrame = { 0, 0, 1512, 982 },
        .notchRect = { (1512 - notch.width()) / 2, 982 - notch.height(), notch.width(), notch.height() } });
    state.setExpandedSize(NotchPanel::expandedSize(*state.geometry(), true, false));
    view.setColor(Qt::transparent);
    view.setFlag(Qt::FramelessWindowHint);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.engine()->addImportPath(u"qrc:/qt/qml"_s);
    player.applications.processes[playerPid] = { u"Tunes"_s, u"org.tunes"_s, 1 };
    player.start();
    view.setInitialProperties({
        { u"notch"_s, QVariant::fromValue(&state) },
        { u"actions"_s, QVariant::fromValue(&actions) },
        { u"store"_s, QVariant::fromValue(history.store.get()) },
        { u"handoff"_s, QVariant::fromValue(&handoff) },
        { u"settings"_s, QVariant::fromValue(&history.settings) },
        { u"about"_s, QVariant::fromValue(&about) },
        { u"keepAwake"_s, QVariant::fromValue(&keepAwake) },
        { u"owl"_s, QVariant::fromValue(&owl) },
        { u"player"_s, QVariant::fromValue(&player.model) },
        { u"timeline"_s, QVariant::fromValue(&timeline) },
    });
    view.resize(notch.toSize());
    view.setSource(QUrl(u"qrc:/qt/qml/Nimbarrow/Notch/NotchRootView.qml"_s));
    if (!view.rootObject())
        qFatal("The views cannot be made.");
    view.show();
    if (!QTest::qWaitForWindowExposed(&view))
        qFatal("The window does not show.");
}

SurfaceFixture::~SurfaceFixture()
{
    view.setSource({});
    ThumbnailFile::setLoader(nullptr);
}

NotchShape* SurfaceFixture::shape() const
{
    return view.rootObject()->property("shape").value<NotchShape*>();
}

void SurfaceFixture::show(NotchState::Mode mode)
{
    const auto frame = NotchPanel::frameFor(mode, *state.geometry(), state.expandedSize());
    if (mode > state.mode())
        view.resize(qRound(frame.width), qRound(frame.height));
    state.setMode(mode);
    settle();
    view.resize(qRound(frame.width), qRound(frame.height));
    QTest::qWait(20);
}

void SurfaceFixture::settle()
{
    QTest::qWait(Motion::instance().isReduced() ? 60 : Springs::surfaceDuration() + 60);
    // The thumbnails that the views have asked for meanwhile.
    history.queues.runAll();
    QTest::qWait(30);
}

void SurfaceFixture::addText(const QString& text)
{
    history.time.advance(std::chrono::seconds(2));
    store().addText(text, {});
}

void SurfaceFixture::addImage(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    history.time.advance(std::chrono::seconds(2));
    store().addImage(png, {});
    history.queues.runAll();
}

void SurfaceFixture::play(const QJsonObject& members)
{
    QJsonObject state { { u"type"_s, u"state"_s }, { u"pid"_s, playerPid }, { u"title"_s, u"Song"_s },
        { u"artist"_s, u"Singer"_s }, { u"duration"_s, 200 } };
    for (auto member = members.begin(); member != members.end(); ++member)
        state.insert(member.key(), member.value());
    player.say(state);
    settle();
}

QQuickItem* SurfaceFixture::find(const char* type, int which) const
{
    return findAll(type).value(which);
}

QList<QQuickItem*> SurfaceFixture::findAll(const char* type) const
{
    auto items = seen(view.contentItem());
    items.removeIf([name = QByteArray(type) + "_QMLTYPE_"](const QQuickItem* item) {
        return !QByteArrayView(item->metaObject()->className()).startsWith(name);
    });
    return items;
}

QQuickItem* SurfaceFixture::button(QQuickItem* within, const QString& name)
{
    const auto items = seen(within);
    const auto found = std::ranges::find_if(
        items, [&name](const QQuickItem* item) { return item->property("help").toString() == name; });
    return found == items.end() ? nullptr : *found;
}

bool SurfaceFixture::shows(const QString& text) const
{
    return std::ranges::any_of(seen(view.contentItem()), [&text](const QQuickItem* item) {
        return item->inherits("QQuickText") && item->property("text").toString() == text;
    });
}

QPoint SurfaceFixture::placeIn(const QQuickItem* item, qreal x, qreal y)
{
    return item->mapToScene({ item->width() * x, item->height() * y }).toPoint();
}

void SurfaceFixture::moveTo(const QPoint& place)
{
    QTest::mouseMove(&view, place);
    QTest::qWait(20);
}

void SurfaceFixture::click(const QPoint& place)
{
    QTest::mouseClick(&view, Qt::LeftButton, {}, place);
    QTest::qWait(20);
}

void SurfaceFixture::drag(const QPoint& from, const QPoint& to)
{
    constexpr auto steps = 15;
    QTest::mousePress(&view, Qt::LeftButton, {}, from);
    for (auto step = 1; step <= steps; ++step) {
        QTest::mouseMove(&view, from + (to - from) * step / steps);
        QTest::qWait(5);
    }
    QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
}

void SurfaceFixture::wheel(const QPoint& place, int angle)
{
    // How far a list goes depends on the time between two steps of the wheel.
    for (const auto time : { 100, 200 }) {
        QWheelEvent event(
            place, view.mapToGlobal(place), {}, { 0, angle }, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        event.setTimestamp(static_cast<quint64>(time));
        QCoreApplication::sendEvent(&view, &event);
    }
}

} // namespace nimbarrow
