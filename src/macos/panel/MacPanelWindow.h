#pragma once

#include "macos/panel/HoverFeed.h"
#include "macos/session/Observation.h"
#include "platform/PanelWindow.h"

#include <memory>

class QQuickWindow;

namespace nimbarrow {

/// A panel of the system that never makes the program the active one, with the view of a Qt window in it.
class MacPanelWindow final : public PanelWindow {
public:
    /// `window` was never shown, and must outlive the panel.
    explicit MacPanelWindow(QQuickWindow& window);
    ~MacPanelWindow() override;

    void setFrame(const ScreenRect& frame) override;
    void orderFront() override;
    void orderOut() override;
    void makeKey() override;
    void resignKey() override;
    [[nodiscard]] bool isKey() const override;
    void setOutline(const QPainterPath& outline) override;

private:
    struct Native;

    void watchKeys();
    void ignoreKeys();
    /// True for an event that goes no further.
    [[nodiscard]] bool takeKey(quint16 place, const KeyEvent& event, bool isDown);
    /// The control that the Tab key has reached comes before everybody else.
    [[nodiscard]] bool isTakenByControl(const KeyEvent& event);
    void keyLost();

    QQuickWindow& m_window;
    HoverFeed m_hover;
    std::unique_ptr<Native> m_native;
    std::unique_ptr<Observation> m_resigned;
    bool m_hasKeyboard = false;
};

} // namespace nimbarrow
