#pragma once

#include "linux/keys/X11Keyboard.h"
#include "linux/panel/PanelKeys.h"
#include "linux/panel/X11Cover.h"
#include "linux/panel/X11KeyFocus.h"
#include "linux/panel/X11Raiser.h"
#include "linux/panel/X11WindowShape.h"
#include "platform/PanelWindow.h"

#include <QAbstractNativeEventFilter>

#include <optional>
#include <xcb/xinput.h>

class QQuickWindow;

namespace nimbarrow {

/// A panel that the window manager is not asked about: it is nobody's to place, to focus or to hide.
class X11PanelWindow final : public PanelWindow, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// `window` was never shown, and must outlive the panel. The program must run on Qt's xcb platform.
    /// `isNested` where the X server is one inside a compositor: the window is larger than its frames there.
    explicit X11PanelWindow(QQuickWindow& window, bool isNested = false);
    ~X11PanelWindow() override;

    void setFrame(const ScreenRect& frame) override;
    void orderFront() override;
    void orderOut() override;
    void makeKey() override;
    void resignKey() override;
    [[nodiscard]] bool isKey() const override { return m_isKey; }
    [[nodiscard]] bool hasReturnedKey() const override { return m_hasReturnedKey; }
    void setOutline(const QPainterPath& outline) override;

    /// What stands above the panel and is to stay there.
    [[nodiscard]] const SessionLock& cover() const { return m_cover; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    /// As the user has done something at that time.
    void endKey(xcb_timestamp_t time);
    /// To those of the pointer's buttons, wherever they go.
    void listenToPresses(bool listen);
    void followPress(const xcb_input_raw_button_press_event_t& press);
    void shapeToOutline();
    void followRestingPointer();

    QQuickWindow& m_window;
    bool m_isNested;
    xcb_connection_t* m_connection;
    xcb_window_t m_id;
    X11WindowShape m_shape;
    X11Cover m_cover;
    X11Raiser m_raiser;
    X11KeyFocus m_focus;
    X11Keyboard m_keyboard;
    PanelKeys m_keys;
    std::optional<QPainterPath> m_outline;
    bool m_isKey = false;
    bool m_hasReturnedKey = false;
    uint8_t m_inputOpcode;
};

} // namespace nimbarrow
