#pragma once

#include "platform/KeyEvent.h"
#include "platform/ScreenGeometry.h"

#include <QObject>
#include <QPainterPath>

namespace nimbarrow {

/// Port: the window that the surface is drawn in. It stands on every desktop and above everything,
/// full-screen programs included, and takes the keyboard only when asked to.
class PanelWindow : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Used exactly as given, also over the menu bar and the notch.
    virtual void setFrame(const ScreenRect& frame) = 0;

    /// Shows the window above all others, without giving it the keyboard.
    virtual void orderFront() = 0;
    /// Hides the window, which gives the keyboard back.
    virtual void orderOut() = 0;

    /// Gives the window the keyboard; keys arrive through `keyPressed` and `keyReleased`.
    virtual void makeKey() = 0;

    /// Gives the keyboard back to where it was before `makeKey`; nothing if the window does not have it.
    virtual void resignKey() = 0;
    [[nodiscard]] virtual bool isKey() const = 0;

    /// The last `resignKey` has given the keyboard to the very window that had it before: nobody has to be
    /// brought to the front for it.
    [[nodiscard]] virtual bool hasReturnedKey() const { return false; }

    /// The drawn outline in window coordinates (points, y down): clicks outside it reach what lies below.
    virtual void setOutline(const QPainterPath& outline) = 0;

Q_SIGNALS:
    void keyPressed(const nimbarrow::KeyEvent& event);
    void keyReleased(const nimbarrow::KeyEvent& event);

    /// Another window has taken the keyboard, or the user has clicked elsewhere; not sent after `resignKey`.
    void resignedKey();
};

} // namespace nimbarrow
