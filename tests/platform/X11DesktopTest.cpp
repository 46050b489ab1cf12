#include "platform/linux/DesktopEntries.h"
#include "platform/qt/FlippedAxis.h"
#include "platform/x11/X11Applications.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11Keystrokes.h"
#include "platform/x11/X11PanelWindow.h"
#include "platform/x11/X11Pointer.h"
#include "platform/x11/X11Trust.h"
#include "support/PrivateXServer.h"
#include "support/XClient.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

namespace {

const ScreenRect panelFrame { 556, -120, 400, 120 };
const QPoint inPanel(756, 60);
const QPoint outsideOutline(570, 100);
constexpr quint32 panelColor = 0x10c020;

// Key codes of the evdev keyboard, which the server has under every layout.
enum Code {
    Escape = 9,
    Return = 36,
    Control = 37,
    S = 39,
    Shift = 50,
    C = 54,
    V = 55,
    CapsLock = 66,
    Super = 133
};
enum Mask { ShiftMask = 1, ControlMask = 4, SuperMask = 64 };

QPainterPath outline()
{
    QPainterPath path;
    path.addRoundedRect(100, 0, 200, 120, 20, 20);
    return path;
}

class Panel {
public:
    Panel()
    {
        QQmlComponent content(&m_engine);
        content.setData("import QtQuick\nRectangle { anchors.fill: parent; color: '#10c020' }", {});
        m_content.reset(qobject_cast<QQuickItem*>(content.create()));
        m_content->setParentItem(m_window.contentItem());
        m_port.setFrame(panelFrame);
    }
    [[nodiscard]] xcb_window_t id() const { return xcb_window_t(m_window.winId()); }
    QQuickWindow* operator*() { return &m_window; }
    X11PanelWindow* operator->() { return &m_port; }

private:
    QQmlEngine m_engine;
    mutable QQuickWindow m_window;
    X11PanelWindow m_port { m_window };
    std::unique_ptr<QQuickItem> m_content;
};

class ClickCounter : public QObject {
public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        count += event->type() == QEvent::MouseButtonPress ? 1 : 0;
        return false;
    }
    int count = 0;
};

} // namespace

class X11DesktopTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_bus.start(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
        QVERIFY(m_bus.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readAllStandardOutput().trimmed());
        QFile config(m_folder.filePath(u"i3"_s));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write("# i3 config file (v4)\nfont pango:monospace 8\nfocus_follows_mouse no\n");
    }

    void cleanup()
    {
        for (auto* process : { &m_compositor, &m_windowManager })
            stop(*process);
        m_user = std::make_unique<XClient>("User");
        QTRY_VERIFY(!m_user->isComposited());
    }

    void cleanupTestCase() { stop(m_bus); }

    void panelStaysAboveFullScreenAndTakesNoFocus_data() { windowManagers(); }
    void panelStaysAboveFullScreenAndTakesNoFocus()
    {
        startDesktop();
        XClient editor("Editor");
        bringUp(editor);
        Panel panel;
        ClickCounter clicks;
        (*panel)->installEventFilter(&clicks);
        panel->orderFront();
        QTRY_COMPARE(m_user->topAt(inPanel), panel.id());
        QTRY_COMPARE(m_user->pixelAt(inPanel), panelColor);
        QVERIFY(editor.isActive());

        XClient film("Film");
        bringUp(film, true);
        QTRY_COMPARE(m_user->topAt(inPanel), panel.id());
        QTRY_COMPARE(m_user->pixelAt(inPanel), panelColor);
        m_user->click(inPanel);
        QTRY_COMPARE(clicks.count, 1);
        QTest::qWait(100);
        QVERIFY(film.isActive());
        QCOMPARE(film.clicks(), 0);
    }

    void keyboardComesAndGoesBack_data() { windowManagers(); }
    void keyboardComesAndGoesBack()
    {
        startDesktop();
        XClient editor("Editor");
        bringUp(editor);
        Panel panel;
        panel->setOutline(outline());
        panel->orderFront();
        QSignalSpy resigned(&*panel.operator->(), &PanelWindow::resignedKey);
        QSignalSpy pressed(&*panel.operator->(), &PanelWindow::keyPressed);

        panel->makeKey();
        QVERIFY(panel->isKey());
        QTRY_COMPARE(m_user->focus(), panel.id());
        m_user->type({ Return });
        QTRY_COMPARE(pressed.size(), 1);
        QVERIFY(editor.keys().isEmpty());
        panel->resignKey();
        QTRY_VERIFY(editor.hasFocus());
        m_user->type({ S });
        QTRY_COMPARE(editor.keys().size(), 2);
        QCOMPARE(pressed.size(), 1);
        QCOMPARE(resigned.size(), 0);

        // Another program comes to the front while the panel has the keyboard.
        panel->makeKey();
        XClient intruder("Intruder");
        intruder.map();
        X11Applications(noEntries()).activate({ {}, {}, intruder.window() });
        QTRY_COMPARE(resigned.size(), 1);
        QVERIFY(!panel->isKey());
        panel->resignKey();
        QTRY_VERIFY(intruder.hasFocus());

        // The program that had the keyboard is gone when the panel closes.
        panel->makeKey();
        QVERIFY(panel->isKey());
        intruder.destroy();
        QTest::qWait(100);
        panel->orderOut();
        QTRY_VERIFY(m_user->focus() != panel.id() && m_user->focus() != XCB_NONE);
    }

    void keysGoByTheirPlace_data()
    {
        QTest::addColumn<QString>("layouts");
        QTest::addColumn<int>("group");

        QTest::newRow("us") << u"us"_s << 0;
        QTest::newRow("ua") << u"us,ua"_s << 1;
        QTest::newRow("fr") << u"fr"_s << 0;
    }
    void keysGoByTheirPlace()
    {
        setLayouts();
        Panel panel;
        panel->orderFront();
        QList<KeyEvent> keys;
        QList<KeyEvent> released;
        connect(panel.operator->(), &PanelWindow::keyPressed, this,
            [&keys](const KeyEvent& key) { keys << key; });
        connect(panel.operator->(), &PanelWindow::keyReleased, this,
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

        keys.clear();
        released.clear();
        m_user->press(Escape);
        QTRY_VERIFY(keys.size() > 3);
        m_user->release(Escape);
        QTRY_COMPARE(released.size(), 1);
        QVERIFY(!keys[0].isRepeat && keys[1].isRepeat);
        QCOMPARE(keys[1].key, Key::Escape);
    }

    void clicksOutsideTheOutlineReachWhatIsBelow()
    {
        startDesktop(u"openbox --sm-disable"_s);
        XClient film("Film");
        bringUp(film, true);
        Panel panel;
        panel->orderFront();
        panel->setOutline(outline());
        QTRY_COMPARE(m_user->topAt(inPanel), panel.id());
        QTRY_COMPARE(m_user->pixelAt(inPanel), panelColor);
        const auto white = 0xffffffU;

        m_user->click(outsideOutline);
        QTRY_COMPARE(film.clicks(), 1);
        QTRY_COMPARE(m_user->pixelAt(outsideOutline), white);

        // With a compositing manager the picture is the panel's own business, edge and all.
        startCompositor();
        QTRY_COMPARE(m_user->pixelAt(outsideOutline), panelColor);
        QTRY_COMPARE(m_user->pixelAt(inPanel), panelColor);
        m_user->click(outsideOutline);
        QTRY_COMPARE(film.clicks(), 2);
        m_user->click(inPanel);
        QTest::qWait(50);
        QCOMPARE(film.clicks(), 2);

        stop(m_compositor);
        QTRY_COMPARE(m_user->pixelAt(outsideOutline), white);
        QTRY_COMPARE(m_user->pixelAt(inPanel), panelColor);
        panel->setOutline({});
        QTRY_VERIFY(m_user->topAt(inPanel) != panel.id());
        m_user->click(inPanel);
        QTRY_COMPARE(film.clicks(), 3);
    }

    void twoWindowsThatBothWantToBeOnTopDoNotFightForEver()
    {
        Panel first;
        Panel second;
        first->orderFront();
        second->orderFront();
        QTest::qWait(300);
        // Each raise makes the server tell the other one that it is obscured.
        auto changes = 0;
        auto top = m_user->topAt(inPanel);
        for (auto i = 0; i < 300; ++i) {
            QTest::qWait(1);
            const auto now = m_user->topAt(inPanel);
            changes += now == top ? 0 : 1;
            top = now;
        }
        QVERIFY2(changes <= 16, qPrintable(QString::number(changes)));
    }

    void hotKeyFiresUnderEveryLayoutAndLock_data() { keysGoByTheirPlace_data(); }
    void hotKeyFiresUnderEveryLayoutAndLock()
    {
        X11HotKeys hotKeys;
        QList<HotKeyId> fired;
        const auto handler = hotKeys.installHandler([&fired](HotKeyId id) { fired << id; });
        const HotKeyId id { 7, 1 };
        auto registered = hotKeys.registerKey(Key::V, KeyModifier::Command | KeyModifier::Shift, id);
        // The layout changes after the grab.
        setLayouts();
        QTest::qWait(100);

        m_user->type({ Super, Shift, V });
        QTRY_COMPARE(fired, QList<HotKeyId>({ id }));
        m_user->type({ CapsLock });
        m_user->type({ Super, Shift, V });
        QTRY_COMPARE(fired.size(), 2);
        m_user->type({ CapsLock });
        m_user->type({ Super, V });
        m_user->type({ Shift, V });
        m_user->press(Super);
        m_user->press(Shift);
        m_user->press(V);
        QTRY_COMPARE(fired.size(), 3);
        // Longer than the server waits before it repeats.
        QTest::qWait(900);
        QCOMPARE(fired.size(), 3);
        m_user->release(V);
        m_user->type({ V });
        m_user->release(Shift);
        m_user->release(Super);
        QTRY_COMPARE(fired.size(), 4);

        QVERIFY(!m_user->grab(V, SuperMask | ShiftMask));
        registered.reset();
        QTRY_VERIFY(m_user->grab(V, SuperMask | ShiftMask));
        // Taken: nobody is told, nothing fires, and giving it up harms nobody.
        registered = hotKeys.registerKey(Key::V, KeyModifier::Command | KeyModifier::Shift, id);
        m_user->type({ Super, Shift, V });
        QTest::qWait(50);
        QCOMPARE(fired.size(), 4);
    }

    void pasteReachesTheProgramInFront_data()
    {
        QTest::addColumn<QString>("layouts");
        QTest::addColumn<int>("group");
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("mask");

        QTest::newRow("editor") << u"us"_s << 0 << QByteArray("Editor") << int(V) << int(ControlMask);
        QTest::newRow("terminal") << u"us"_s << 0 << QByteArray("Term") << int(V)
                                  << (ControlMask | ShiftMask);
        QTest::newRow("unknown") << u"us"_s << 0 << QByteArray("Other") << int(V) << int(ControlMask);
        QTest::newRow("ua") << u"us,ua"_s << 1 << QByteArray("Editor") << int(V) << int(ControlMask);
        QTest::newRow("no v anywhere") << u"ua"_s << 0 << QByteArray("Editor") << int(V) << int(ControlMask);
        // Dvorak's v is where a US layout has the full stop.
        QTest::newRow("dvorak") << u"us(dvorak)"_s << 0 << QByteArray("Editor") << 60 << int(ControlMask);
    }
    void pasteReachesTheProgramInFront()
    {
        startDesktop(u"openbox --sm-disable"_s);
        setLayouts();
        QFETCH(const QByteArray, program);
        QFETCH(const int, code);
        QFETCH(const int, mask);
        XClient editor(program);
        bringUp(editor);
        X11Applications applications(ourEntries());
        X11Keystrokes keystrokes(applications);
        QVERIFY(X11Trust().isTrusted());
        m_user->press(Super);
        m_user->press(Shift);
        QTRY_VERIFY(m_user->isDown(Super) && m_user->isDown(Shift));
        QTest::qWait(50);
        editor.forgetKeys();

        keystrokes.postPaste();
        QTRY_VERIFY(editor.keys().contains(std::pair(-code, mask)));
        QVERIFY(editor.keys().contains(std::pair(code, mask)));
        QTRY_VERIFY(m_user->isDown(Super) && m_user->isDown(Shift) && !m_user->isDown(Control));
        m_user->release(Shift);
        m_user->release(Super);
    }

    void frontProgramIsNamedAndComesBack()
    {
        startDesktop(u"openbox --sm-disable"_s);
        X11Applications applications(ourEntries());
        XClient editor("Editor");
        bringUp(editor);
        const RunningApplication expected { u"Редактор"_s, u"org.example.editor"_s, editor.window() };
        QCOMPARE(applications.frontmost(), std::optional(expected));
        XClient other("SomeTool");
        bringUp(other);
        QCOMPARE(applications.frontmost(),
            std::optional(RunningApplication { u"SomeTool"_s, {}, other.window() }));
        applications.activate(expected);
        QTRY_VERIFY(editor.isActive());
        other.destroy();
        applications.activate({ {}, {}, other.window() });
        QTRY_VERIFY(editor.isActive());
    }

    void pointerTellsPlaceAndButtons()
    {
        const X11Pointer pointer;
        m_user->movePointer({ 300, 200 });
        QTRY_COMPARE(pointer.location(), (ScreenPoint { 300, -200 }));
        QVERIFY(!pointer.isAnyButtonDown());
        m_user->button(true);
        QTRY_VERIFY(pointer.isAnyButtonDown());
        m_user->button(false);
        QTRY_VERIFY(!pointer.isAnyButtonDown());
    }

    void init() { m_user = std::make_unique<XClient>("User"); }

private:
    static void windowManagers()
    {
        QTest::addColumn<QString>("command");

        for (const auto& command : { u"openbox --sm-disable"_s, u"openbox --sm-disable + picom"_s,
                 u"xfwm4 --compositor=off"_s, u"xfwm4 --compositor=on"_s, u"i3 -c %1/i3"_s,
                 u"metacity --compositor=none"_s, u"metacity --compositor=xrender"_s, u"kwin_x11"_s })
            QTest::newRow(qPrintable(command)) << command;
    }

    void startDesktop()
    {
        QFETCH(const QString, command);
        startDesktop(command.section(u" + "_s, 0, 0).replace(u"%1"_s, m_folder.path()));
        if (command.contains(u'+'))
            startCompositor();
    }

    void startDesktop(const QString& command)
    {
        auto words = QProcess::splitCommand(command);
        m_windowManager.setStandardErrorFile(QProcess::nullDevice());
        m_windowManager.start(words.takeFirst(), words);
        QVERIFY2(m_windowManager.waitForStarted(), "this window manager is not installed");
        QTRY_VERIFY_WITH_TIMEOUT(
            m_user->exists(m_user->rootWindowProperty("_NET_SUPPORTING_WM_CHECK")), 20'000);
    }

    // A window manager that has just started may take the window for one that was there before.
    static void bringUp(XClient& client, bool fullScreen = false)
    {
        client.map(fullScreen);
        while (
            !QTest::qWaitFor([&client] { return client.isActive(); }, 500) && !QTest::currentTestFailed()) {
            client.map(fullScreen);
            X11Applications(noEntries()).activate({ {}, {}, client.window() });
        }
    }

    void startCompositor()
    {
        m_compositor.setStandardErrorFile(QProcess::nullDevice());
        m_compositor.start(u"picom"_s, { u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s });
        QVERIFY(m_compositor.waitForStarted());
        QTRY_VERIFY(m_user->isComposited());
    }

    static void stop(QProcess& process)
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.terminate();
        if (!process.waitForFinished(5000))
            process.kill();
        process.waitForFinished();
    }

    void setLayouts()
    {
        QFETCH(const QString, layouts);
        QFETCH(const int, group);
        const auto variant = layouts.section(u'(', 1).chopped(layouts.contains(u'(') ? 1 : 0);
        QCOMPARE(QProcess::execute(
                     u"setxkbmap"_s, { u"-layout"_s, layouts.section(u'(', 0, 0), u"-variant"_s, variant }),
            0);
        m_user->setGroup(group);
    }

    static std::unique_ptr<DesktopEntries> noEntries()
    {
        return std::make_unique<DesktopEntries>(QStringList(), u"C"_s);
    }

    std::unique_ptr<DesktopEntries> ourEntries()
    {
        const auto write = [this](const QString& id, const QByteArray& more) {
            QDir().mkpath(m_folder.filePath(u"applications"_s));
            QFile file(m_folder.filePath(u"applications/"_s + id + u".desktop"_s));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("[Desktop Entry]\nType=Application\n" + more);
        };
        write(u"org.example.editor"_s, "Name=Editor\nName[uk]=Редактор\nCategories=Utility;\n");
        write(u"term"_s, "Name=Terminal\nCategories=System;TerminalEmulator;\n");
        return std::make_unique<DesktopEntries>(QStringList(m_folder.path()), u"uk_UA"_s);
    }

    QTemporaryDir m_folder;
    QProcess m_bus;
    QProcess m_windowManager;
    QProcess m_compositor;
    std::unique_ptr<XClient> m_user;
};

// By hand, because the server must be there before the application object connects to it.
int main(int argc, char** argv)
{
    const PrivateXServer server({ u"-screen"_s, u"0"_s, u"1512x982x24"_s });
    if (!server.isRunning()) {
        qCritical("Xvfb does not start");
        return 1;
    }
    const QTemporaryDir home;
    qputenv("DISPLAY", server.displayName());
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("GSETTINGS_BACKEND", "memory");
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("KWIN_COMPOSE", "N");
    const QGuiApplication application(argc, argv);
    X11DesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11DesktopTest.moc"
