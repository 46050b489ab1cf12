#include "macos/panel/MacPanelWindow.h"

#include "macos/display/ScreenRects.h"
#include "macos/keys/KeyCodes.h"
#include "macos/panel/PanelViews.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

#include <cmath>

namespace nimbarrow {

struct MacPanelWindow::Native {
    NimbarrowPanel* panel;
    NimbarrowPanelView* host;
    /// Belongs to the Qt window.
    __weak NSView* view;
    /// While the panel has the keyboard.
    id keys;
};

MacPanelWindow::MacPanelWindow(QQuickWindow& window)
    : m_window(window)
    , m_hover(window)
    , m_native(std::make_unique<Native>())
{
    window.setFlags(Qt::FramelessWindowHint);
    auto format = window.requestedFormat();
    format.setAlphaBufferSize(8);
    window.setFormat(format);
    window.setColor(Qt::transparent);
    window.setTitle(QGuiApplication::applicationDisplayName());
    window.create();

    auto* const panel = [NimbarrowPanel panel];
    auto* const host = [[NimbarrowPanelView alloc] initWithFrame:panel.frame];
    auto* const view = (__bridge NSView*)reinterpret_cast<void*>(window.winId());
    panel.contentView = host;
    // Not as the content itself: Qt shows and hides a window whose content is its own, and makes it key.
    [host addSubview:view];
    *m_native = { panel, host, view, nil };
    [host onPointer:[this](QPointF place) { m_hover.pointerAt(place, NSApp.active); }
        gone:[this] { m_hover.pointerGone(NSApp.active); }];
}

MacPanelWindow::~MacPanelWindow()
{
    ignoreKeys();
    [m_native->host onPointer:{} gone: {}];
    [m_native->panel orderOut:nil];
    // The view goes with its Qt window, the panel before it.
    [m_native->view removeFromSuperview];
    [m_native->panel close];
}

void MacPanelWindow::setFrame(const ScreenRect& frame)
{
    [m_native->panel setFrame:nativeRectOf(frame) display:YES];
    // In the coordinates of the host, whose top left corner is where the panel's is.
    m_window.setGeometry(
        0, 0, static_cast<int>(std::ceil(frame.width)), static_cast<int>(std::ceil(frame.height)));
}

void MacPanelWindow::orderFront()
{
    // Qt draws into its view from now on; which window it lies in is not Qt's to say.
    m_window.setVisible(true);
    [m_native->panel orderFrontRegardless];
}

void MacPanelWindow::orderOut()
{
    resignKey();
    [m_native->panel orderOut:nil];
    m_hover.pointerGone(NSApp.active);
}

void MacPanelWindow::makeKey()
{
    if (m_hasKeyboard)
        return;
    m_hasKeyboard = true;
    auto* const panel = m_native->panel;
    panel.allowsKey = YES;
    // In this order: Qt takes a view for focused only when its window has the keyboard already.
    [panel makeKeyWindow];
    [panel makeFirstResponder:nil];
    [panel makeFirstResponder:m_native->view];
    watchKeys();
    m_resigned = std::make_unique<Observation>(Observation::Centre::Application,
        QString::fromNSString(NSWindowDidResignKeyNotification), [this] { keyLost(); });
}

void MacPanelWindow::resignKey()
{
    if (!m_hasKeyboard)
        return;
    m_hasKeyboard = false;
    m_resigned.reset();
    ignoreKeys();
    auto* const panel = m_native->panel;
    panel.allowsKey = NO;
    if (!panel.keyWindow)
        return;
    // The one way to make the system look for another window to give the keyboard to.
    const bool wasVisible = panel.visible;
    [panel orderOut:nil];
    if (wasVisible)
        [panel orderFrontRegardless];
}

bool MacPanelWindow::isKey() const
{
    return m_hasKeyboard && m_native->panel.keyWindow;
}

void MacPanelWindow::setOutline(const QPainterPath& outline)
{
    m_hover.setOutline(outline);
}

void MacPanelWindow::watchKeys()
{
    m_native->keys =
        [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown | NSEventMaskKeyUp
                                              handler:^NSEvent*(NSEvent* event) {
                                                  const bool isDown = event.type == NSEventTypeKeyDown;
                                                  const KeyEvent key { keycodes::keyAt(event.keyCode),
                                                      keycodes::modifiersOf(event.modifierFlags),
                                                      isDown && event.ARepeat };
                                                  return takeKey(event.keyCode, key, isDown) ? nil : event;
                                              }];
}

void MacPanelWindow::ignoreKeys()
{
    if (id keys = std::exchange(m_native->keys, nil))
        [NSEvent removeMonitor:keys];
}

bool MacPanelWindow::takeKey(quint16 place, const KeyEvent& event, bool isDown)
{
    if (!isKey())
        return false;
    // Qt moves its focus from control to control with it.
    if (place == keycodes::placeOfTab)
        return false;
    if (isDown && isTakenByControl(event))
        return true;
    if (isDown)
        Q_EMIT keyPressed(event);
    else
        Q_EMIT keyReleased(event);
    return true;
}

bool MacPanelWindow::isTakenByControl(const KeyEvent& event)
{
    auto* const control = m_window.activeFocusItem();
    const auto key = keycodes::qtKeyOf(event.key);
    if (!control || key == Qt::Key_unknown)
        return false;
    QKeyEvent pressed(
        QEvent::KeyPress, key, keycodes::qtModifiersOf(event.modifiers), QString(), event.isRepeat);
    QCoreApplication::sendEvent(control, &pressed);
    return pressed.isAccepted();
}

void MacPanelWindow::keyLost()
{
    // Any window of the program may have lost it.
    if (m_native->panel.keyWindow)
        return;
    m_hasKeyboard = false;
    m_native->panel.allowsKey = NO;
    ignoreKeys();
    m_resigned.reset();
    Q_EMIT resignedKey();
}

} // namespace nimbarrow
