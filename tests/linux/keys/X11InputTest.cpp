#include "linux/applications/DesktopEntries.h"
#include "linux/applications/X11Applications.h"
#include "linux/keys/X11HotKeys.h"
#include "linux/keys/X11Keystrokes.h"
#include "support/Test.h"
#include "support/TestFolder.h"
#include "support/TestPanel.h"
#include "support/X11Desktop.h"
#include "support/X11Main.h"
#include "support/XClient.h"

namespace {

// Key codes of the evdev keyboard, which the server has under every layout.
enum Code { Control = 37, Shift = 50, C = 54, V = 55, Space = 65, CapsLock = 66, Super = 133 };
enum Mask { ShiftMask = 1, ControlMask = 4, SuperMask = 64 };

} // namespace

class X11InputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysGoByTheirPlace_data()
    {
        const Rows<QString, int> row;
        row("us", u"us"_s, 0);
        row("ua", u"us,ua"_s, 1);
        row("fr", u"fr"_s, 0);
    }
    void keysGoByTheirPlace()
    {
        const auto [layouts, group] = Rows<QString, int>::current();
        setLayouts(layouts, group);
        TestPanel panel;
        panel->orderFront();
        QList<KeyEvent> keys;
        QList<KeyEvent> released;
        connect(&panel.port(), &PanelWindow::keyPressed, this, [&keys](const KeyEvent& key) { keys << key; });
        connect(&panel.port(), &PanelWindow::keyReleased, this,
            [&released](const KeyEvent& key) { released << key; });
        panel->makeKey();
        QVERIFY(panel->isKey());
        m_user->type({ CapsLock });
        m_user->type({ Control, C });
        m_user->type({ Super, Shift, V });
        m_user->type({ CapsLock });
        QTRY_COMPARE(released.size(), 7);
        QCOMPARE(keys.size(), 7);
        QCOMPARE(keys[2].key, Key::C);
        QCOMPARE(keys[2].modifiers, KeyModifiers(KeyModifier::Command));
        QCOMPARE(keys[5].key, Key::V);
        QCOMPARE(keys[5].modifiers, KeyModifier::Command | KeyModifier::Shift);
    }

    void otherKeysGoByWhatTheyDo_data()
    {
        const Rows<QString, QList<int>, QList<Key>> row;
        using enum Key;
        row("usual", {}, { 9, 22, 36, 65, 104, 111, 113, 114, 116, 119 },
            { Escape, Backspace, Return, Space, KeypadEnter, Up, Left, Right, Down, ForwardDelete });
        // Num Lock is off.
        row("keypad", {}, { 80, 83, 85, 88, 91, 84 }, { Up, Left, Right, Down, ForwardDelete, Other });
        row("digits", u"numpad:mac"_s, { 80, 83, 91 }, { Other, Other, Other });
        row("caps lock as escape", u"caps:escape"_s, { 66 }, { Escape });
        row("swapped", u"caps:swapescape"_s, { 66, 9, 9 }, { Escape, Other, Other });
        row("caps lock as backspace", u"caps:backspace"_s, { 66 }, { Backspace });
    }
    void otherKeysGoByWhatTheyDo()
    {
        const auto [option, codes, expected] = Rows<QString, QList<int>, QList<Key>>::current();
        QCOMPARE(QProcess::execute(
                     u"setxkbmap"_s, { u"-layout"_s, u"us"_s, u"-option"_s, {}, u"-option"_s, option }),
            0);
        TestPanel panel;
        panel->orderFront();
        QList<Key> keys;
        connect(&panel.port(), &PanelWindow::keyPressed, this,
            [&keys](const KeyEvent& event) { keys << event.key; });
        panel->makeKey();
        for (const auto code : codes)
            m_user->type({ code });
        QTRY_COMPARE(keys.size(), codes.size());
        QCOMPARE(keys, expected);
    }

    void keyThatIsHeldIsReleasedOnce()
    {
        // Fast enough that a release and the press after it are not always read together.
        QCOMPARE(QProcess::execute(u"xset"_s, { u"r"_s, u"rate"_s, u"150"_s, u"200"_s }), 0);
        TestPanel panel;
        panel->orderFront();
        QList<KeyEvent> keys;
        QList<KeyEvent> released;
        connect(&panel.port(), &PanelWindow::keyPressed, this, [&keys](const KeyEvent& key) { keys << key; });
        connect(&panel.port(), &PanelWindow::keyReleased, this,
            [&released](const KeyEvent& key) { released << key; });
        panel->makeKey();
        for (auto times = 1; times <= 2; ++times) {
            keys.clear();
            m_user->press(Space);
            QTRY_VERIFY(keys.size() > 200);
            QCOMPARE(released.size(), times - 1);
            m_user->release(Space);
            QTRY_COMPARE(released.size(), times);
            QCOMPARE(std::ranges::count(keys, false, &KeyEvent::isRepeat), 1);
            QVERIFY(!keys.first().isRepeat);
        }
    }

    void hotKeyFiresUnderEveryLayoutAndLock_data() { keysGoByTheirPlace_data(); }
    void hotKeyFiresUnderEveryLayoutAndLock()
    {
        X11HotKeys hotKeys;
        auto fired = 0;
        const auto registerKey = [&hotKeys, &fired] {
            return hotKeys.registerKey(
                Key::V, KeyModifier::Command | KeyModifier::Shift, [&fired] { ++fired; });
        };
        auto registered = registerKey();
        // The layout changes after the grab.
        const auto [layouts, group] = Rows<QString, int>::current();
        setLayouts(layouts, group);
        QTest::qWait(100);

        m_user->type({ Super, Shift, V });
        QTRY_COMPARE(fired, 1);
        m_user->type({ CapsLock });
        m_user->type({ Super, Shift, V });
        QTRY_COMPARE(fired, 2);
        m_user->type({ CapsLock });
        m_user->type({ Super, V });
        m_user->type({ Shift, V });
        m_user->press(Super);
        m_user->press(Shift);
        m_user->press(V);
        QTRY_COMPARE(fired, 3);
        // Longer than the server waits before it repeats.
        QTest::qWait(900);
        QCOMPARE(fired, 3);
        m_user->release(V);
        m_user->type({ V });
        m_user->release(Shift);
        m_user->release(Super);
        QTRY_COMPARE(fired, 4);

        QVERIFY(!m_user->grab(V, SuperMask | ShiftMask));
        registered.reset();
        QTRY_VERIFY(m_user->grab(V, SuperMask | ShiftMask));
        // Taken: nobody is told, nothing fires, and giving it up harms nobody.
        registered = registerKey();
        m_user->type({ Super, Shift, V });
        QTest::qWait(50);
        QCOMPARE(fired, 4);
    }

    void pasteReachesTheProgramInFront_data()
    {
        const Rows<QString, int, QByteArray, int, int> row;
        row("editor", u"us"_s, 0, "Editor", V, ControlMask);
        row("terminal", u"us"_s, 0, "Term", V, ControlMask | ShiftMask);
        row("unknown", u"us"_s, 0, "Other", V, ControlMask);
        row("ua", u"us,ua"_s, 1, "Editor", V, ControlMask);
        row("no v anywhere", u"ua"_s, 0, "Editor", V, ControlMask);
        // Dvorak's v is where a US layout has the full stop.
        row("dvorak", u"us(dvorak)"_s, 0, "Editor", 60, ControlMask);
    }
    void pasteReachesTheProgramInFront()
    {
        QVERIFY(m_desktop->start(u"openbox --sm-disable"_s));
        const auto [layouts, group, program, code, mask]
            = Rows<QString, int, QByteArray, int, int>::current();
        setLayouts(layouts, group);
        XClient editor(program);
        QVERIFY(m_desktop->bringUp(editor));
        X11Applications applications(ourEntries());
        X11Keystrokes keystrokes(applications);
        QVERIFY(keystrokes.isAvailable());
        m_user->press(Super);
        m_user->press(Shift);
        QTRY_VERIFY(m_user->isDown(Super) && m_user->isDown(Shift));
        QTest::qWait(50);
        editor.forgetKeys();

        keystrokes.postPaste();
        const std::pair pressed(code, mask);
        const std::pair released(-code, mask);
        QTRY_VERIFY(editor.keys().contains(released));
        QVERIFY(editor.keys().contains(pressed));
        QTRY_VERIFY(m_user->isDown(Super) && m_user->isDown(Shift) && !m_user->isDown(Control));
        m_user->release(Shift);
        m_user->release(Super);
    }

    void frontProgramIsNamedAndComesBack()
    {
        QVERIFY(m_desktop->start(u"openbox --sm-disable"_s));
        X11Applications applications(ourEntries());
        XClient editor("Editor");
        QVERIFY(m_desktop->bringUp(editor));
        const RunningApplication expected { u"Редактор"_s, u"org.example.editor"_s, editor.window() };
        QCOMPARE(applications.frontmost(), std::optional(expected));
        XClient other("SomeTool");
        QVERIFY(m_desktop->bringUp(other));
        QCOMPARE(applications.frontmost(),
            std::optional(RunningApplication { u"SomeTool"_s, {}, other.window() }));
        applications.activate(expected);
        QTRY_VERIFY(editor.isActive());
        other.destroy();
        applications.activate({ {}, {}, other.window() });
        QTRY_VERIFY(editor.isActive());
    }

    void init()
    {
        m_desktop = std::make_unique<X11Desktop>();
        m_user = std::make_unique<XClient>("User");
        QTRY_VERIFY(!m_user->isComposited());
    }
    void cleanup() { m_desktop.reset(); }

private:
    void setLayouts(const QString& layouts, int group)
    {
        const auto variant = layouts.section(u'(', 1).chopped(layouts.contains(u'(') ? 1 : 0);
        QCOMPARE(QProcess::execute(
                     u"setxkbmap"_s, { u"-layout"_s, layouts.section(u'(', 0, 0), u"-variant"_s, variant }),
            0);
        m_user->setGroup(group);
    }

    std::unique_ptr<DesktopEntries> ourEntries()
    {
        const auto write = [this](const QString& id, const QByteArray& more) {
            writeFile(m_desktop->folder() + u"/applications/"_s + id + u".desktop"_s,
                "[Desktop Entry]\nType=Application\n" + more);
        };
        write(u"org.example.editor"_s, "Name=Editor\nName[uk]=Редактор\nCategories=Utility;\n");
        write(u"term"_s, "Name=Terminal\nCategories=System;TerminalEmulator;\n");
        return std::make_unique<DesktopEntries>(QStringList(m_desktop->folder()), u"uk_UA"_s);
    }

    std::unique_ptr<X11Desktop> m_desktop;
    std::unique_ptr<XClient> m_user;
};

int main(int argc, char** argv)
{
    return runOnPrivateXServer<X11InputTest>(argc, argv);
}

#include "X11InputTest.moc"
