#pragma once

#include "platform/PanelWindow.h"
#include "platform/Pointer.h"
#include "platform/Screens.h"
#include "platform/SessionLock.h"

namespace nimbarrow {

/// Screens that the test plugs in and out.
class FakeScreens final : public Screens {
    Q_OBJECT

public:
    [[nodiscard]] QList<Screen> screens() const override { return m_screens; }

    void plugIn(const QList<Screen>& screens)
    {
        m_screens = screens;
        Q_EMIT changed();
    }

    /// 1512 x 982 points with a notch 184 wide and 32 high in the middle of its top edge.
    [[nodiscard]] static Screen notched()
    {
        return { QStringLiteral("eDP-1"), { 0, -982, 1512, 982 }, 32, ScreenRect { 0, -32, 664, 32 },
            ScreenRect { 848, -32, 664, 32 } };
    }

private:
    QList<Screen> m_screens;
};

/// A session that the test locks.
class FakeSessionLock final : public SessionLock {
    Q_OBJECT

public:
    [[nodiscard]] bool isLocked() const override { return m_isLocked; }

    void setLocked(bool locked)
    {
        m_isLocked = locked;
        Q_EMIT changed();
    }

private:
    bool m_isLocked = false;
};

/// A pointer that the test moves.
class FakePointer final : public Pointer {
public:
    [[nodiscard]] ScreenPoint location() const override { return place; }
    [[nodiscard]] bool isAnyButtonDown() const override { return buttonDown; }

    ScreenPoint place { 100, -900 };
    bool buttonDown = false;
};

/// A window that keeps what was asked of it.
class FakePanelWindow final : public PanelWindow {
    Q_OBJECT

public:
    void setFrame(const ScreenRect& rect) override { frame = rect; }
    void orderFront() override { visible = true; }
    void orderOut() override { visible = key = false; }
    void makeKey() override { key = true; }
    void resignKey() override { key = false; }
    [[nodiscard]] bool isKey() const override { return key; }
    [[nodiscard]] bool hasReturnedKey() const override { return returnsKey; }
    void setOutline(const QPainterPath& path) override { outline = path; }

    /// Another window takes the keyboard.
    void loseKey()
    {
        key = false;
        Q_EMIT resignedKey();
    }

    void press(Key pressed, KeyModifiers modifiers = {}) { Q_EMIT keyPressed({ pressed, modifiers, false }); }
    void letGo(Key released) { Q_EMIT keyReleased({ released, {}, false }); }

    ScreenRect frame;
    QPainterPath outline;
    bool visible = false;
    bool key = false;
    bool returnsKey = false;
};

} // namespace nimbarrow
