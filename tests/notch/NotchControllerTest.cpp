#include "notch/NotchController.h"

#include "clipboard/ClipboardMonitor.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/PasteboardCapture.h"
#include "clipboard/Paster.h"
#include "preferences/L10n.h"
#include "support/FakeDesktop.h"
#include "support/FakePasteboard.h"
#include "support/HistoryFixture.h"
#include "support/Test.h"

#include <QCoreApplication>

namespace {

const RunningApplication editor { u"Editor"_s, u"editor"_s, 7 };
constexpr ScreenPoint insideNotch { 750, -16 };
constexpr ScreenPoint farAway { 100, -900 };

/// The whole surface over doubles of the desktop.
struct Surface : HistoryFixture {
    FakeScreens screens;
    FakeSessionLock lock;
    FakePointer pointer;
    FakePanelWindow window;
    FakeApplications applications;
    FakeKeystrokes keystrokes;
    FakePasteboard pasteboard;
    PasteboardCapture capture { *store, queues };
    ClipboardMonitor monitor { capture, pasteboard, applications, time };
    Paster paster { monitor, settings, trust, keystrokes };
    NotchController controller { NotchServices { screens, lock, pointer, window, applications, keystrokes,
        time, settings, *store, monitor, capture, paster } };

    Surface()
    {
        paster.deliverPaste = [this] { controller.keyboard().deliverPaste(); };
        screens.plugIn({ FakeScreens::notched() });
        applications.front = editor;
        controller.start();
    }

    NotchState& state() { return controller.state(); }
    [[nodiscard]] bool isExpanded() { return state().mode() == NotchState::Expanded; }

    /// The last one is the newest, at the top of the list.
    void remember(const QStringList& texts)
    {
        for (const auto& text : texts) {
            store->addText(text, std::nullopt);
            time.advance(1s);
        }
    }

    void rememberImage(const QString& name)
    {
        store->addFiles({ QUrl::fromLocalFile(u'/' + name + u".png"_s) }, std::nullopt);
        time.advance(1s);
    }

    [[nodiscard]] QString selected()
    {
        const auto* item = store->find(state().selection());
        return item ? item->text.value_or(item->imagePath.value_or(QString())) : QString();
    }
};

PeekContent notice(const QString& line)
{
    return PeekContent::make(u"link"_s, line);
}

} // namespace

class NotchControllerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { L10n::setCurrent(L10n::English); }

    void isOutOfSightWithoutANotchAndWhileLocked_data()
    {
        const Rows<bool, QByteArray> row;
        for (const QByteArray shown :
            { "nothing", "notice", "surface", "held surface", "drag", "keyboard" }) {
            row("locked, " + shown, true, shown);
            row("no notch, " + shown, false, shown);
        }
    }
    void isOutOfSightWithoutANotchAndWhileLocked()
    {
        const auto current = Rows<bool, QByteArray>::current();
        const auto locks = std::get<bool>(current);
        const auto shown = std::get<QByteArray>(current);
        Surface s;
        if (shown == "notice")
            s.controller.peek(notice(u"first"_s));
        else if (shown == "drag")
            s.controller.dragEntered();
        else if (shown == "keyboard")
            s.controller.toggleKeyboard();
        else if (shown != "nothing")
            s.controller.hoverEntered();
        if (shown == "held surface")
            s.controller.actions().hold();
        const auto lock = [&](bool on) {
            if (locks)
                s.lock.setLocked(on);
            else
                s.screens.plugIn(on ? QList<Screen>() : QList { FakeScreens::notched() });
        };

        lock(true);
        QVERIFY(!s.window.visible);
        QVERIFY(!s.window.key);
        QVERIFY(!s.state().keyboardMode());
        // Another program that comes to the front could come above a locker.
        QVERIFY(s.applications.activated.isEmpty());
        s.controller.hoverEntered();
        s.controller.toggleKeyboard();
        s.controller.peek(notice(u"unseen"_s));
        s.screens.plugIn(locks ? QList { FakeScreens::notched() } : QList<Screen>());
        s.time.advance(1min);
        QVERIFY(!s.window.visible && !s.window.key);
        QCOMPARE(s.state().mode(), NotchState::Collapsed);
        QVERIFY(!s.state().hasPeek() && !s.state().dropTargeted());

        // What was shown before is not there again, and nothing holds what comes next.
        lock(false);
        QVERIFY(s.window.visible);
        QCOMPARE(s.window.frame, s.state().geometry()->notchRect);
        s.controller.hoverEntered();
        s.time.advance(1s);
        QVERIFY(!s.isExpanded());
        s.controller.peek(notice(u"seen"_s));
        QVERIFY(s.state().hasPeek());
        s.time.advance(1min);
        QCOMPARE(s.state().mode(), NotchState::Collapsed);
    }

    void followsAScreenThatChangesWhileExpanded()
    {
        Surface s;
        s.controller.hoverEntered();
        auto moved = FakeScreens::notched();
        for (auto* rect : { &moved.frame, &*moved.topLeftArea, &*moved.topRightArea })
            rect->x += 1000;
        s.screens.plugIn({ moved });
        QVERIFY(s.isExpanded());
        QCOMPARE(s.window.frame, (ScreenRect { 1526, -258, 460, 258 }));
    }

    void expandsAtOnceAndShrinksThePanelLater()
    {
        Surface s;
        QCOMPARE(s.window.frame, (ScreenRect { 664, -32, 184, 32 }));
        QVERIFY(s.window.visible);
        int expansions = 0;
        s.controller.onExpand = [&expansions] { ++expansions; };
        s.state().setShowSettings(true);
        s.controller.hoverEntered();
        s.controller.hoverEntered();
        QCOMPARE(s.window.frame, (ScreenRect { 526, -258, 460, 258 }));
        QCOMPARE(expansions, 1);
        QVERIFY(!s.state().showSettings());

        s.controller.hoverExited();
        s.time.advance(39ms);
        QVERIFY(s.isExpanded());
        s.time.advance(1ms);
        QCOMPARE(s.state().mode(), NotchState::Collapsed);
        s.time.advance(279ms);
        // It keeps its size when it grows again meanwhile.
        s.pointer.place = insideNotch;
        s.controller.hoverEntered();
        s.time.advance(1s);
        QVERIFY(s.isExpanded());
        QCOMPARE(s.window.frame.width, 460.0);

        s.controller.actions().collapse();
        s.time.advance(279ms);
        QCOMPARE(s.window.frame.width, 460.0);
        s.time.advance(1ms);
        QCOMPARE(s.window.frame, s.state().geometry()->notchRect);
        QCOMPARE(s.time.pending(), 0);
    }

    void isAsHighAsTheCalendarNeeds()
    {
        Surface s;
        s.pointer.place = insideNotch;
        s.controller.hoverEntered();
        s.state().setCalendarExpanded(true);
        QCoreApplication::processEvents();
        QCOMPARE(s.window.frame.height, 322.0);
        s.settings.setShowCalendar(false);
        QCOMPARE(s.window.frame.height, 240.0);
        s.settings.setShowCalendar(true);
        s.controller.actions().collapse();
        QCoreApplication::processEvents();
        // The calendar folds with the surface, without a panel that is too small for what still shrinks.
        QVERIFY(!s.state().calendarExpanded());
        QCOMPARE(s.window.frame.height, 322.0);
    }

    void collapsesOnlyWhenNothingHoldsIt_data()
    {
        const Rows<ScreenPoint, bool, bool> row;
        row("far away", farAway, false, false);
        row("4 points below", { 756, -262 }, false, true);
        row("5 points below", { 756, -263 }, false, false);
        row("4 points beside", { 522, -100 }, false, true);
        row("5 points beside", { 521, -100 }, false, false);
        row("dragging out", farAway, true, true);
    }
    void collapsesOnlyWhenNothingHoldsIt()
    {
        const auto [pointer, button, stays] = Rows<ScreenPoint, bool, bool>::current();
        Surface s;
        s.controller.hoverEntered();
        s.pointer.place = pointer;
        s.pointer.buttonDown = button;
        s.time.advance(50ms);
        QCOMPARE(s.isExpanded(), stays);
        s.pointer.buttonDown = false;
        s.pointer.place = farAway;
        s.time.advance(150ms);
        QVERIFY(!s.isExpanded());
    }

    void countsHoldsAndNeverBelowZero()
    {
        Surface s;
        auto& actions = s.controller.actions();
        s.controller.hoverEntered();
        actions.release();
        actions.release();
        actions.hold();
        actions.hold();
        actions.release();
        s.time.advance(10s);
        QVERIFY(s.isExpanded());
        actions.release();
        s.time.advance(150ms);
        QVERIFY(!s.isExpanded());
    }

    void showsOneNoticeAtATime()
    {
        Surface s;
        s.controller.peek(notice(u"first"_s));
        QCOMPARE(s.window.frame, (ScreenRect { 510, -60, 492, 60 }));
        s.controller.peek(notice(u"second"_s));
        QCOMPARE(s.state().peek()->line, u"first"_s);
        s.time.advance(2399ms);
        QCOMPARE(s.state().mode(), NotchState::Peek);
        s.time.advance(1ms);
        QCOMPARE(s.state().mode(), NotchState::Collapsed);
        QVERIFY(s.state().hasPeek());
        s.time.advance(280ms);
        QVERIFY(!s.state().hasPeek());
    }

    void turnsANoticeIntoTheSurfaceUnderThePointer()
    {
        Surface s;
        s.controller.peek(notice(u"first"_s));
        s.controller.hoverEntered();
        s.pointer.place = insideNotch;
        s.time.advance(5s);
        QVERIFY(s.isExpanded());
        QVERIFY(!s.state().hasPeek());
        s.controller.peek(notice(u"while open"_s));
        QVERIFY(!s.state().hasPeek());
    }

    void opensForAPointerThatMovesAlone()
    {
        Surface s;
        const ScreenPoint besideNotch { 700, -20 };
        s.pointer.place = besideNotch;
        const auto hover = [&s](ScreenPoint place) {
            s.pointer.place = place;
            s.controller.hovered();
            const auto opened = s.isExpanded();
            s.controller.setMode(NotchState::Collapsed);
            return opened;
        };
        // A notice, and then the surface under the hot key, grow under the pointer and shrink again.
        s.controller.peek(notice(u"copied"_s));
        s.controller.hovered();
        QCOMPARE(s.state().mode(), NotchState::Peek);
        s.time.advance(5s);
        s.controller.toggleKeyboard();
        s.controller.hovered();
        s.window.press(Key::Escape);
        QVERIFY(!hover(besideNotch));
        // What has shrunk already is not there any more, though the panel is.
        QVERIFY(!hover({ 756, -200 }));
        QVERIFY(hover(insideNotch));
        // It has been elsewhere meanwhile.
        QVERIFY(!hover(insideNotch));
        s.pointer.place = farAway;
        s.controller.hoverExited();
        QVERIFY(hover(insideNotch));

        s.controller.peek(notice(u"copied"_s));
        QVERIFY(hover({ 600, -20 }));
    }

    void takesWhatIsDropped()
    {
        Surface s;
        L10n::setCurrent(L10n::Ukrainian);
        s.controller.dragEntered();
        s.controller.dragEntered();
        QVERIFY(s.state().dropTargeted());
        s.time.advance(5s);
        QVERIFY(s.isExpanded());
        s.pasteboard.content.string = u"dropped"_s;
        s.controller.dropped(s.pasteboard);
        QCOMPARE(s.store->items().first().text, u"dropped"_s);
        QCOMPARE(s.store->items().first().sourceApp, u"Полиця"_s);
        QVERIFY(!s.state().dropTargeted());
        s.controller.dragExited();
        s.time.advance(150ms);
        QVERIFY(!s.isExpanded());
    }

    void selectsWithTheArrowKeys()
    {
        Surface s;
        s.remember({ u"c"_s, u"b"_s, u"a"_s });
        s.rememberImage(u"y"_s);
        s.rememberImage(u"x"_s);
        s.controller.toggleKeyboard();
        const struct {
            Key key;
            QString selected;
        } steps[] = {
            { Key::Up, u"a"_s },
            { Key::Down, u"b"_s },
            { Key::Right, u"/x.png"_s },
            { Key::Right, u"/y.png"_s },
            { Key::Right, u"/y.png"_s },
            { Key::Up, u"b"_s }, // where it was in the list
            { Key::Down, u"c"_s },
            { Key::Down, u"c"_s },
            { Key::Left, u"/y.png"_s },
            { Key::Left, u"/x.png"_s },
            { Key::Left, u"/x.png"_s },
        };
        QCOMPARE(s.selected(), u"a"_s);
        for (const auto& step : steps) {
            s.window.press(step.key);
            QCOMPARE(s.selected(), step.selected);
        }
    }

    void leavesHiddenEntriesAloneBehindTheSettings()
    {
        Surface s;
        s.remember({ u"kept"_s });
        s.controller.toggleKeyboard();
        s.state().setShowSettings(true);
        for (const auto key : { Key::ForwardDelete, Key::Return, Key::Space })
            s.window.press(key);
        s.window.press(Key::C, KeyModifier::Command);
        QVERIFY(s.state().keyboardMode());
        QVERIFY(!s.store->isEmpty());
        s.window.press(Key::Escape);
        QVERIFY(!s.state().keyboardMode());
    }

    void keepsTheSelectionOnAnEntryThatExists()
    {
        Surface s;
        s.remember({ u"c"_s, u"b"_s, u"a"_s });
        s.controller.toggleKeyboard();
        s.window.press(Key::Down);
        s.window.press(Key::ForwardDelete);
        QCOMPARE(s.selected(), u"c"_s); // the one that moved up
        s.window.press(Key::Backspace);
        QCOMPARE(s.selected(), u"a"_s); // the last one left
        s.store->addText(u"new"_s, std::nullopt);
        QCOMPARE(s.selected(), u"a"_s);
        s.store->clear();
        QVERIFY(s.state().selection().isNull());
        s.window.press(Key::Down);
        s.window.press(Key::Return);
        QVERIFY(!s.state().keyboardMode());
        QCOMPARE(s.keystrokes.pastes, 0);
    }

    void givesTheKeyboardBack_data()
    {
        const Rows<Key, KeyModifiers, bool, QString> row;
        using enum KeyModifier;
        row("escape", Key::Escape, {}, true, {});
        row("the hot key", Key::V, Command | Shift, true, {});
        row("command-v", Key::V, Command, false, {});
        row("command-c", Key::C, Command, true, u"a"_s);
        row("c", Key::C, {}, false, {});
        row("command-shift-c", Key::C, Command | Shift, false, {});
        row("another key", Key::Other, {}, false, {});
    }
    void givesTheKeyboardBack()
    {
        const auto [key, modifiers, closes, copied] = Rows<Key, KeyModifiers, bool, QString>::current();
        Surface s;
        s.remember({ u"a"_s });
        s.controller.toggleKeyboard();
        QVERIFY(s.window.key);
        s.pointer.place = insideNotch;
        s.time.advance(10s);
        QVERIFY(s.isExpanded());
        s.window.press(key, modifiers);
        QCOMPARE(s.state().keyboardMode(), !closes);
        QCOMPARE(s.window.key, !closes);
        QCOMPARE(s.isExpanded(), !closes);
        QCOMPARE(s.applications.activated, closes ? QList { editor } : QList<RunningApplication> {});
        QCOMPARE(s.pasteboard.content.string.value_or(QString()), copied);
        QVERIFY(s.state().selection().isNull() == closes);
    }

    void raisesNobodyWhoHasTheKeyboardBackOrTookIt()
    {
        for (const auto isTaken : { false, true }) {
            Surface s;
            s.window.returnsKey = !isTaken;
            s.controller.toggleKeyboard();
            if (isTaken)
                s.window.loseKey();
            else
                s.window.press(Key::Escape);
            QVERIFY(!s.window.key && !s.state().keyboardMode() && !s.isExpanded());
            QCOMPARE(s.applications.activated, {});
        }
    }

    void pastesAfterTheKeyboardWasGivenBack()
    {
        Surface s;
        s.remember({ u"b"_s, u"a"_s });
        s.controller.toggleKeyboard();
        s.window.press(Key::Down);
        s.window.press(Key::KeypadEnter);
        QCOMPARE(s.pasteboard.content.string, u"b"_s);
        QCOMPARE(s.applications.activated, QList { editor });
        s.time.advance(49ms);
        QCOMPARE(s.keystrokes.pastes, 0);
        s.time.advance(1ms);
        QCOMPARE(s.keystrokes.pastes, 1);
        QVERIFY(!s.isExpanded());
        // Outside keyboard mode nobody has to be waited for.
        s.controller.keyboard().deliverPaste();
        QCOMPARE(s.keystrokes.pastes, 2);
    }

    void tellsATapOfSpaceFromAHold()
    {
        Surface s;
        int plays = 0;
        s.controller.keyboard().onPlayPause = [&plays] { ++plays; };
        s.remember({ u"a"_s });
        s.rememberImage(u"x"_s);
        s.controller.toggleKeyboard();
        s.window.press(Key::Space);
        QCOMPARE(plays, 1); // in the list of texts it plays at once
        s.window.letGo(Key::Space);
        QCOMPARE(plays, 1);

        s.window.press(Key::Right);
        s.window.press(Key::Space);
        s.time.advance(349ms);
        s.window.letGo(Key::Space);
        QCOMPARE(plays, 2);

        s.window.press(Key::Space);
        s.time.advance(350ms);
        QCOMPARE(s.state().preview(), s.state().selection());
        QCOMPARE(s.window.frame, (ScreenRect { 376, -480, 760, 480 }));
        s.window.letGo(Key::Space);
        QVERIFY(s.state().preview().isNull());
        QCOMPARE(plays, 2);
        s.time.advance(280ms);
        QCOMPARE(s.window.frame.width, 460.0);
    }
};

QTEST_GUILESS_MAIN(NotchControllerTest)
#include "NotchControllerTest.moc"
