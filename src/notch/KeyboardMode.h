#pragma once

#include "notch/KeyboardSelection.h"
#include "notch/NotchServices.h"
#include "platform/Applications.h"
#include "platform/KeyEvent.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

class QQuickWindow;

namespace nimbarrow {

class ControlFocus;
class NotchActions;
class NotchState;

/// The surface while the keyboard is its own: the keys belong to the selected entry until the Tab key takes
/// them to a control, and to an entry again from the next arrow key on.
class KeyboardMode final : public QObject {
    Q_OBJECT

public:
    /// `actions` are asked to collapse the surface, which closes the mode. Both outlive the mode.
    KeyboardMode(const NotchServices& services, NotchState& state, const NotchActions& actions,
        QObject* parent = nullptr);

    /// Follows the Tab key over the controls of this window. It may die first.
    void attach(QQuickWindow& window);

    [[nodiscard]] bool isOn() const;
    /// Takes the keyboard, for a surface that is expanded.
    void open();
    /// Gives the keyboard back to the program that was in front, unless somebody else has it by now. Nothing
    /// when the mode is off.
    void close();

    /// Types the paste keystroke into the program in front, which gets the keyboard back first.
    void deliverPaste();

    /// Space outside the image strip.
    std::function<void()> onPlayPause;

private:
    void handleKey(const KeyEvent& event);
    void handleKeyUp(const KeyEvent& event);
    [[nodiscard]] static bool belongsToEntry(Key key);
    void moveSelection(KeyboardSelection::Move move);
    void pasteSelected();
    void copySelected();
    void removeSelected();
    void beginSpaceHold();
    void endSpaceHold();

    NotchServices m_services;
    NotchState& m_state;
    const NotchActions& m_actions;
    KeyboardSelection m_selection;
    QPointer<ControlFocus> m_focus;
    std::optional<RunningApplication> m_previousApp;
    bool m_spacePreviewing = false;
    Timer m_spaceHold;
    Timer m_pasteTimer;
};

} // namespace nimbarrow
