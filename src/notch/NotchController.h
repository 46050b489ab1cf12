#pragma once

#include "notch/KeyboardSelection.h"
#include "notch/NotchActions.h"
#include "notch/NotchPanel.h"
#include "notch/NotchState.h"
#include "platform/Applications.h"
#include "platform/KeyEvent.h"
#include "platform/Scheduler.h"

#include <QObject>

#include <functional>
#include <optional>

namespace nimbarrow {

class ClipboardMonitor;
class ClipboardStore;
class HoverTrackingView;
class Keystrokes;
class PanelWindow;
class Paster;
class PasteboardCapture;
class PasteboardContent;
class Pointer;
class Screens;
class SessionLock;
class Settings;

/// What the controller works with. All of it outlives the controller.
struct NotchServices {
    Screens& screens;
    const SessionLock& sessionLock;
    Pointer& pointer;
    PanelWindow& panelWindow;
    Applications& applications;
    Keystrokes& keystrokes;
    Scheduler& scheduler;
    const Settings& settings;
    ClipboardStore& store;
    ClipboardMonitor& monitor;
    PasteboardCapture& capture;
    Paster& paster;
};

/// Drives the surface: when it grows and shrinks, what keeps it open, its notices, and its keyboard mode.
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

    /// Shows a notice for a moment; dropped unless the surface is collapsed over a notch.
    void peek(const PeekContent& content);
    void setMode(NotchState::Mode mode);
    /// Finds the notch anew and puts the panel over it. Where there is none, and while the session is locked,
    /// the panel is hidden and refuses everything.
    void relayout();

    void hoverEntered();
    void hoverExited();
    void dragEntered();
    void dragExited();
    void dropped(const PasteboardContent& content);

    /// The hot key.
    void toggleKeyboard();
    void handleKey(const KeyEvent& event);
    void handleKeyUp(const KeyEvent& event);

    /// Types the paste keystroke into the program in front, which gets the keyboard back first.
    void deliverPaste();

    /// Run each time the surface expands.
    std::function<void()> onExpand;
    /// Space outside the image strip.
    std::function<void()> onPlayPause;

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

    void openKeyboard();
    void closeKeyboard(bool collapsing);
    void pasteSelected();
    void copySelected();
    void removeSelected();
    void beginSpaceHold();
    void endSpaceHold();
    void preview(const QUuid& item);

    NotchServices m_services;
    NotchState m_state;
    NotchActions m_actions;
    NotchPanel m_panel;
    KeyboardSelection m_selection;
    std::optional<RunningApplication> m_previousApp;
    bool m_spacePreviewing = false;
    int m_holdCount = 0;
    bool m_dragHeld = false;
    Timer m_collapseTimer;
    Timer m_peekTimer;
    Timer m_dragWatch;
    Timer m_exitWatch;
    Timer m_settleTimer;
    Timer m_spaceHold;
    Timer m_pasteTimer;
};

} // namespace nimbarrow
