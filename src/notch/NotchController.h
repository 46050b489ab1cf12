#pragma once

#include "notch/KeyboardMode.h"
#include "notch/NotchActions.h"
#include "notch/NotchPanel.h"
#include "notch/NotchServices.h"
#include "notch/NotchState.h"
#include "platform/Scheduler.h"

#include <QObject>

#include <functional>
#include <optional>

namespace nimbarrow {

class HoverTrackingView;
class PasteboardContent;

/// Drives the surface: when it grows and shrinks, what keeps it open, and its notices.
class NotchController final : public QObject {
    Q_OBJECT

public:
    explicit NotchController(const NotchServices& services, QObject* parent = nullptr);

    /// Follows the screens, the history and the settings from now on, and lays the panel out.
    void start();

    /// Follows the pointer and the drags over this view. The view may die first.
    void attach(HoverTrackingView& view);

    [[nodiscard]] NotchState& state() { return m_state; }
    [[nodiscard]] NotchActions& actions() { return m_actions; }
    [[nodiscard]] KeyboardMode& keyboard() { return m_keyboard; }

    /// Shows a notice for a moment; dropped unless the surface is collapsed over a notch.
    void peek(const PeekContent& content);
    void setMode(NotchState::Mode mode);
    /// Finds the notch anew and puts the panel over it. Where there is none, and while the session is locked,
    /// the panel is hidden and refuses everything.
    void relayout();

    /// The pointer is over the panel. It has entered only if it has moved there by itself.
    void hovered();
    void hoverEntered();
    void hoverExited();
    void dragEntered();
    void dragExited();
    void dropped(const PasteboardContent& content);

    /// The hot key.
    void toggleKeyboard();
    /// Opens the surface for the keyboard, unless it is open for it.
    void openKeyboard();

    /// Run each time the surface expands.
    std::function<void()> onExpand;

private:
    void updateExpandedSize();
    void layOut(NotchState::Mode mode);
    void vanish();
    void resizeForCalendar();
    void settleLater(std::function<void()> task);

    void hold();
    void release();
    void collapse();
    void scheduleCollapse(Scheduler::Duration delay);
    void startExitWatch();
    void collapseIfIdle();
    void watchDrag();

    void closeKeyboard(bool collapsing);
    void preview(const QUuid& item);

    NotchServices m_services;
    NotchState m_state;
    NotchActions m_actions;
    NotchPanel m_panel;
    KeyboardMode m_keyboard;
    int m_holdCount = 0;
    bool m_dragHeld = false;
    /// Where the pointer was when the panel last changed under it.
    std::optional<ScreenPoint> m_restingPointer;
    Timer m_collapseTimer;
    Timer m_peekTimer;
    Timer m_dragWatch;
    Timer m_exitWatch;
    Timer m_settleTimer;
};

} // namespace nimbarrow
