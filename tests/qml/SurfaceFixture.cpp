#include "qml/SurfaceFixture.h"

#include "clipboard/ThumbnailFile.h"
#include "notch/NotchPanel.h"
#include "notch/SurfaceSpring.h"
#include "style/Motion.h"

#include <QBuffer>
#include <QImage>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QTest>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

void collect(QQuickItem* item, const QByteArray& type, QList<QQuickItem*>& found)
{
    if (!item->isVisible() || item->opacity() <= 0)
        return;
    if (QByteArrayView(item->metaObject()->className()).startsWith(type))
        found << item;
    for (auto* const child : item->childItems())
        collect(child, type, found);
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
    QTest::qWait(Motion::instance().isReduced() ? 60 : SurfaceSpring::duration() + 60);
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

QQuickItem* SurfaceFixture::find(const char* type, int which) const
{
    return findAll(type).value(which);
}

QList<QQuickItem*> SurfaceFixture::findAll(const char* type) const
{
    QList<QQuickItem*> found;
    collect(view.contentItem(), QByteArray(type) + "_QMLTYPE_", found);
    return found;
}

QQuickItem* SurfaceFixture::button(QQuickItem* within, const QString& name)
{
    QList<QQuickItem*> found;
    collect(within, "IconButton_QMLTYPE_", found);
    for (auto* const item : found) {
        if (item->property("help").toString() == name)
            return item;
    }
    return nullptr;
}

QPoint SurfaceFixture::middle(const QQuickItem* item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
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
