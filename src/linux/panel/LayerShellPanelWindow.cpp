#include "linux/panel/LayerShellPanelWindow.h"

#include "layer-shell-client.h"
#include "linux/display/WaylandPointer.h"
#include "linux/display/WaylandRegistry.h"
#include "linux/display/WaylandResources.h"
#include "linux/panel/CoveredRows.h"
#include "linux/panel/PanelRoom.h"
#include "qt/FlippedAxis.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLibraryInfo>
#include <QQuickWindow>
#include <QScreen>
#include <QVersionNumber>

#include <algorithm>
#include <functional>

namespace nimbarrow {

namespace {

// Sums of points leave crumbs that must not cost a whole pixel.
constexpr auto crumb = 1.0 / 64;

// Of this version on a layer surface can be told from one that is gone.
constexpr auto newestShell = 4;

Key letterAt(quint32 code)
{
    // The kernel's codes of the places, as X counts them.
    constexpr quint32 placeOfC = 46 + 8;
    constexpr quint32 placeOfV = 47 + 8;
    return code == placeOfC ? Key::C : code == placeOfV ? Key::V : Key::Other;
}

} // namespace

void LayerShellPanelWindow::Destroy::operator()(zwlr_layer_shell_v1* shell) const
{
    if (zwlr_layer_shell_v1_get_version(shell) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION)
        zwlr_layer_shell_v1_destroy(shell);
    else
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(shell));
}

void LayerShellPanelWindow::Destroy::operator()(zwlr_layer_surface_v1* layer) const
{
    zwlr_layer_surface_v1_destroy(layer);
}

LayerShellPanelWindow::LayerShellPanelWindow(QQuickWindow& window, WaylandPointer& pointer)
    : m_window(window)
    , m_pointer(pointer)
    , m_keys(window, letterAt)
    , m_focusReturn(LayerFocusReturn::forKWin())
    , m_mayGiveToNew(!qEnvironmentVariableIsSet("SWAYSOCK"))
{
    const WaylandRegistry registry(wayland::qtDisplay());
    m_shell.reset(registry.bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, newestShell));
    m_lockersAreSurfaces = registry.version("zwlr_input_inhibit_manager_v1") > 0
        && registry.version("ext_session_lock_manager_v1") == 0;
    m_hasFractions = QLibraryInfo::version() >= QVersionNumber(6, 5) && registry.version("wp_viewporter") > 0
        && registry.version("wp_fractional_scale_manager_v1") > 0;
    // Without a role of Qt's: it gets ours.
    window.setFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    auto format = window.requestedFormat();
    format.setAlphaBufferSize(8);
    window.setFormat(format);
    window.setColor(Qt::transparent);
    // Nobody sees it, but a screen reader says it.
    window.setTitle(QGuiApplication::applicationDisplayName());
    window.installEventFilter(this);
    // An output that came back so fast that nobody has seen it go.
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this] {
        if (m_isFront && !m_layer)
            map();
    });
}

LayerShellPanelWindow::~LayerShellPanelWindow()
{
    unmap();
}

void LayerShellPanelWindow::setFrame(const ScreenRect& frame)
{
    const auto wanted = flipped(frame.grown(-crumb)).toAlignedRect();
    const auto before = m_surface;
    m_surface = panelRoom(m_surface, wanted);
    if (!m_layer || m_surface == before)
        return;
    if (screenOfFrame() == m_screen) {
        place();
    } else {
        unmap();
        map();
    }
}

void LayerShellPanelWindow::orderFront()
{
    m_isFront = true;
    if (!m_layer)
        map();
}

void LayerShellPanelWindow::orderOut()
{
    m_isFront = false;
    unmap();
}

void LayerShellPanelWindow::map()
{
    static constexpr zwlr_layer_surface_v1_listener listener {
        [](void* self, zwlr_layer_surface_v1* layer, uint32_t serial, uint32_t, uint32_t) {
            zwlr_layer_surface_v1_ack_configure(layer, serial);
            static_cast<LayerShellPanelWindow*>(self)->show();
        },
        [](void* self, zwlr_layer_surface_v1*) {
            // The output has gone. Not from inside an event of what is destroyed.
            QMetaObject::invokeMethod(static_cast<LayerShellPanelWindow*>(self),
                &LayerShellPanelWindow::unmap, Qt::QueuedConnection);
        },
    };
    // A surface that Qt has made by itself, as for another screen, may have been drawn on.
    m_window.hide();
    m_window.destroy();
    m_screen = screenOfFrame();
    auto* const output = m_screen ? wayland::output(*m_screen) : nullptr;
    if (!output || !m_shell)
        return;
    m_window.setScreen(m_screen);
    m_window.create();
    auto* const surface = wayland::surface(m_window);
    const auto layer
        = m_lockersAreSurfaces ? ZWLR_LAYER_SHELL_V1_LAYER_TOP : ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY;
    m_layer.reset(zwlr_layer_shell_v1_get_layer_surface(m_shell.get(), surface, output, layer, "nimbarrow"));
    zwlr_layer_surface_v1_add_listener(m_layer.get(), &listener, this);
    zwlr_layer_surface_v1_set_anchor(
        m_layer.get(), ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
    // Over the bars, too.
    zwlr_layer_surface_v1_set_exclusive_zone(m_layer.get(), -1);
    if (m_keyboard)
        zwlr_layer_surface_v1_set_keyboard_interactivity(m_layer.get(), onDemand());
    place();
    wl_surface_commit(surface);
    wl_display_flush(wayland::qtDisplay());
}

void LayerShellPanelWindow::show()
{
    m_window.show();
    // Only now Qt asks for a scale between two whole ones, and its buffers then count as they are. By then it
    // may have believed the whole one that the compositor has told, and such buffers would end the
    // connection.
    if (m_hasFractions)
        wl_surface_set_buffer_scale(wayland::surface(m_window), 1);
}

void LayerShellPanelWindow::unmap()
{
    resignKey();
    m_pointer.loseSurface();
    if (!m_layer)
        return;
    m_layer.reset();
    m_window.hide();
    m_window.destroy();
}

// It counts from the next frame on, which has that size.
void LayerShellPanelWindow::place()
{
    const auto corner = m_surface.topLeft() - m_screen->geometry().topLeft();
    zwlr_layer_surface_v1_set_size(
        m_layer.get(), static_cast<uint32_t>(m_surface.width()), static_cast<uint32_t>(m_surface.height()));
    zwlr_layer_surface_v1_set_margin(m_layer.get(), corner.y(), 0, 0, corner.x());
    m_window.resize(m_surface.size());
}

void LayerShellPanelWindow::makeKey()
{
    if (m_keyboard || !m_layer)
        return;
    m_keys.forget();
    // Not from inside an event of what is destroyed.
    const auto lost = [this] {
        QMetaObject::invokeMethod(this, &LayerShellPanelWindow::keyboardLost, Qt::QueuedConnection);
    };
    m_keyboard = std::make_unique<LayerKeyboard>(
        wayland::surface(m_window), std::bind_front(&LayerShellPanelWindow::claimKeyboard, this), lost);
}

void LayerShellPanelWindow::claimKeyboard(LayerKeyboard::Claim claim)
{
    switch (claim) {
    case LayerKeyboard::Claim::OnDemand: setInteractivity(onDemand()); break;
    case LayerKeyboard::Claim::OnDemandAnew:
        // Not from inside an event of what is destroyed.
        if (m_mayGiveToNew)
            QMetaObject::invokeMethod(this, &LayerShellPanelWindow::mapForKeyboard, Qt::QueuedConnection);
        else
            m_keyboard->awaitAnswer();
        break;
    case LayerKeyboard::Claim::Exclusive:
        m_mayGiveToNew = false;
        setInteractivity(ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE);
    }
}

quint32 LayerShellPanelWindow::onDemand() const
{
    return zwlr_layer_shell_v1_get_version(m_shell.get())
            >= ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND_SINCE_VERSION
        ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND
        : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE;
}

void LayerShellPanelWindow::mapForKeyboard()
{
    if (!m_keyboard)
        return;
    auto keyboard = std::move(m_keyboard);
    unmap();
    m_keyboard = std::move(keyboard);
    map();
    if (!m_layer) {
        resignKey();
        Q_EMIT resignedKey();
        return;
    }
    m_keyboard->setSurface(wayland::surface(m_window));
    // The compositor decides when there is something to be seen.
    const auto awaitAnswer = [this] {
        if (m_keyboard)
            m_keyboard->awaitAnswer();
    };
    connect(&m_window, &QQuickWindow::frameSwapped, this, awaitAnswer,
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void LayerShellPanelWindow::resignKey()
{
    if (!m_keyboard)
        return;
    m_keyboard.reset();
    setInteractivity(ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    // KWin leaves the keyboard where it is for as long as that surface is there. Not from inside the event of
    // a key, and not if the panel is to go anyway.
    if (m_layer && m_focusReturn)
        QMetaObject::invokeMethod(this, &LayerShellPanelWindow::mapAnew, Qt::QueuedConnection);
}

// To a locker, or to a window that was clicked; but what is dragged out of the panel takes the keyboard, too.
void LayerShellPanelWindow::keyboardLost()
{
    if (!m_keyboard || m_pointer.isAnyButtonDown())
        return;
    resignKey();
    Q_EMIT resignedKey();
}

void LayerShellPanelWindow::mapAnew()
{
    if (!m_layer || m_keyboard)
        return;
    unmap();
    map();
}

void LayerShellPanelWindow::setInteractivity(quint32 interactivity)
{
    if (!m_layer)
        return;
    zwlr_layer_surface_v1_set_keyboard_interactivity(m_layer.get(), interactivity);
    // There may be no frame to come.
    wl_surface_commit(wayland::surface(m_window));
    wl_display_flush(wayland::qtDisplay());
}

void LayerShellPanelWindow::setOutline(const QPainterPath& outline)
{
    QRegion region;
    for (const auto rows = coveredRows(outline, 1); const auto& row : rows)
        region += row;
    m_pointer.setOutline(region.translated(m_surface.topLeft()));
    // An empty one would mean all of it.
    if (region.isEmpty())
        region = QRect(-1, -1, 1, 1);
    m_window.setMask(region);
}

bool LayerShellPanelWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &m_window)
        return PanelWindow::eventFilter(watched, event);
    followPointer(*event);
    switch (event->type()) {
    case QEvent::PlatformSurface:
        // Qt may do so by itself. What the layer makes of a surface must go before it.
        if (static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType()
            == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            m_layer.reset();
        return false;
    case QEvent::KeyPress:
    case QEvent::KeyRelease: break;
    default: return false;
    }
    if (!m_keyboard)
        return false;
    const auto told = m_keys.follow(static_cast<QKeyEvent&>(*event));
    if (told && event->type() == QEvent::KeyPress)
        Q_EMIT keyPressed(*told);
    else if (told)
        Q_EMIT keyReleased(*told);
    return true;
}

void LayerShellPanelWindow::followPointer(const QEvent& event)
{
    const auto placeOf = [this](const QEvent& pointed) {
        return static_cast<const QSinglePointEvent&>(pointed).position() + m_surface.topLeft();
    };
    switch (event.type()) {
    case QEvent::Enter: m_pointer.enter(placeOf(event)); break;
    // What is dragged takes the pointer along. A drop may be told of long after it, so it tells no place.
    case QEvent::DragEnter:
    case QEvent::DragMove:
        m_pointer.move(static_cast<const QDropEvent&>(event).position() + m_surface.topLeft());
        break;
    case QEvent::DragLeave:
    case QEvent::Leave: m_pointer.leave(); break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        m_pointer.move(placeOf(event));
        m_pointer.setAnyButtonDown(static_cast<const QMouseEvent&>(event).buttons() != Qt::NoButton);
        if (event.type() == QEvent::MouseButtonPress && m_focusReturn && !m_keyboard)
            m_focusReturn->giveBack();
        break;
    default: break;
    }
}

QScreen* LayerShellPanelWindow::screenOfFrame() const
{
    const auto screens = QGuiApplication::screens();
    const QPoint top(m_surface.center().x(), m_surface.top());
    const auto found = std::ranges::find_if(
        screens, [&top](const QScreen* screen) { return screen->geometry().contains(top); });
    return found == screens.end() ? QGuiApplication::primaryScreen() : *found;
}

} // namespace nimbarrow
