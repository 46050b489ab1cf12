#include "app/NotchSurface.h"

#include "app/AppModel.h"
#include "app/RestingMemory.h"
#include "notch/HoverTrackingView.h"
#include "notch/NotchController.h"
#include "notch/NotchShape.h"
#include "platform/Platform.h"

#include <QQmlEngine>

using namespace Qt::StringLiterals;

namespace nimbarrow {

NotchSurface::NotchSurface(const Platform& platform)
    : m_platform(platform)
{
    m_view.setColor(Qt::transparent);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.engine()->addImportPath(u"qrc:/qt/qml"_s);
    m_panelWindow = platform.adoptPanel(m_view);
}

NotchSurface::~NotchSurface() = default;

void NotchSurface::load(NotchController& controller, AppModel& model)
{
    m_view.setInitialProperties({
        { u"notch"_s, QVariant::fromValue(&controller.state()) },
        { u"actions"_s, QVariant::fromValue(&controller.actions()) },
        { u"store"_s, QVariant::fromValue(&model.store()) },
        { u"handoff"_s, QVariant::fromValue(&model.handoff()) },
        { u"settings"_s, QVariant::fromValue(&model.settings()) },
        { u"about"_s, QVariant::fromValue(&model.about()) },
        { u"keepAwake"_s, QVariant::fromValue(&model.keepAwake()) },
        { u"owl"_s, QVariant::fromValue(&model.owl()) },
        { u"player"_s, QVariant::fromValue(&model.player()) },
        { u"timeline"_s, QVariant::fromValue(&model.timeline()) },
    });
    m_view.setSource(QUrl(u"qrc:/qt/qml/Nimbarrow/Notch/NotchRootView.qml"_s));
    auto* root = qobject_cast<HoverTrackingView*>(m_view.rootObject());
    auto* shape = root ? root->property("shape").value<NotchShape*>() : nullptr;
    // The views are part of the program: one that does not load is a broken build.
    if (!shape)
        qFatal("The views cannot be made.");
    const auto follow = [this, shape] { m_panelWindow->setOutline(shape->outline()); };
    QObject::connect(shape, &NotchShape::outlineChanged, m_panelWindow.get(), follow);
    follow();
    // The software renderer of newer Qt clears more of the window than it draws again when only a part has
    // changed, and the desktop shines through. So each frame is followed by one that draws the whole body.
    QObject::connect(&m_view, &QQuickWindow::frameSwapped, shape, [shape, whole = false]() mutable {
        whole = !whole;
        if (whole)
            shape->update();
    });
    root->setDropReader(*m_platform.dropReader);
    controller.attach(*root);
    m_restingMemory = std::make_unique<RestingMemory>(
        controller.state(), m_view, model.thumbnails(), *m_platform.scheduler, m_platform.returnFreeMemory);
}

void NotchSurface::unload()
{
    m_restingMemory.reset();
    m_view.setSource({});
}

} // namespace nimbarrow
