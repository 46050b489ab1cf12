#include "files/KeyFile.h"
#include "linux/applications/DesktopEntries.h"
#include "linux/applications/KWinWindows.h"
#include "linux/display/WaylandRegistry.h"
#include "linux/display/WaylandResources.h"
#include "linux/keys/FakeInputKeystrokes.h"
#include "linux/keys/GlobalAccelHotKeys.h"
#include "support/EditorWindow.h"
#include "support/PrivateBus.h"
#include "support/PrivateCompositor.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QClipboard>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>

#include <fake-input-client.h>

namespace {

constexpr int superShiftV = (Qt::META | Qt::SHIFT | Qt::Key_V).toCombined();
constexpr int controlAltV = (Qt::CTRL | Qt::ALT | Qt::Key_V).toCombined();

QString folder;

} // namespace

class KWinInputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const WaylandRegistry registry(m_display);
        m_user = registry.bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, 4);
        QVERIFY2(m_user, "KWin has not read the desktop file of this test");
        org_kde_kwin_fake_input_authenticate(m_user, "", "");
        m_applications = std::make_unique<KWinWindows>(
            m_bus, std::make_unique<DesktopEntries>(QStringList(folder), u"uk_UA"_s));
        m_editor = std::make_unique<EditorWindow>();
        QTRY_COMPARE(front(), u"org.example.editor"_s);
    }

    void frontProgramIsNamedAndComesBack()
    {
        const auto editor = m_applications->frontmost();
        QCOMPARE(editor->name, u"Редактор"_s);
        QProcess other;
        other.setStandardErrorFile(QProcess::nullDevice());
        other.start(u"mousepad"_s, { u"--disable-server"_s });
        QTRY_COMPARE_WITH_TIMEOUT(front(), u"mousepad"_s, 20'000);
        QTRY_VERIFY(m_editor->isLeft());
        QVERIFY(m_applications->isTerminalInFront());
        QCOMPARE(m_applications->withProcess(int(other.processId())), m_applications->frontmost());

        m_applications->activate(*editor);
        QTRY_COMPARE(m_applications->frontmost(), editor);
        QTRY_VERIFY(m_editor->isActive());
        other.terminate();
        QTRY_COMPARE(other.state(), QProcess::NotRunning);
    }

    void pasteReachesANativeWindow()
    {
        FakeInputKeystrokes keystrokes(m_display, *m_applications);
        QVERIFY(keystrokes.isAvailable());
        QProcess copied;
        copied.start(u"wl-copy"_s, { u"--foreground"_s, u"скопійоване"_s });
        QTRY_VERIFY(m_editor->isActive());
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), u"скопійоване"_s);
        keystrokes.postPaste();
        QTRY_COMPARE(m_editor->text(), u"скопійоване"_s);
        type({ KeyV });
        QTRY_COMPARE(m_editor->text(), u"скопійованеv"_s);
        copied.kill();
        copied.waitForFinished();
    }

    void hotKeyIsInTheSystemsSettings()
    {
        GlobalAccelHotKeys hotKeys(m_bus, u"Відкрити історію"_s);
        auto fired = 0;
        const auto registerKey = [&] {
            return hotKeys.registerKey(
                Key::V, KeyModifier::Command | KeyModifier::Shift, [&fired] { ++fired; });
        };
        auto registered = registerKey();
        QTRY_COMPARE(keys(u"shortcut"_s), QList<int> { superShiftV });
        type({ KeyMeta, KeyShift, KeyV });
        QTRY_COMPARE(fired, 1);

        // As the settings do it.
        ask(u"setForeignShortcut"_s, { id(), QVariant::fromValue(QList<int> { controlAltV }) });
        QTRY_COMPARE(keys(u"shortcut"_s), QList<int> { controlAltV });
        type({ KeyControl, KeyAlt, KeyV });
        QTRY_COMPARE(fired, 2);
        registered.reset();
        // The question returns after the end of the registration has arrived.
        QCOMPARE(keys(u"shortcut"_s), QList<int> { controlAltV });
        type({ KeyControl, KeyAlt, KeyV });
        registered = registerKey();
        QCOMPARE(keys(u"shortcut"_s), QList<int> { controlAltV });
        type({ KeyMeta, KeyShift, KeyV });
        type({ KeyControl, KeyAlt, KeyV });
        QTRY_COMPARE(fired, 3);
        QTest::qWait(50);
        QCOMPARE(fired, 3);
        // What is in use, what it was at first, and the name.
        QTRY_VERIFY(KeyFile(readFile(folder + u"/kglobalshortcutsrc"_s))
                        .value("ua.tessak.Nimbarrow", "toggle-history")
            == "Ctrl+Alt+V,Meta+Shift+V,Відкрити історію");
    }

    void cleanupTestCase()
    {
        m_editor.reset();
        m_applications.reset();
        if (m_user)
            wl_proxy_destroy(reinterpret_cast<wl_proxy*>(m_user));
    }

private:
    enum Code : unsigned { KeyControl = 29, KeyShift = 42, KeyV = 47, KeyAlt = 56, KeyMeta = 125 };

    [[nodiscard]] QString front() const
    {
        return m_applications->frontmost().value_or(RunningApplication {}).identifier;
    }

    static QStringList id()
    {
        return { u"ua.tessak.Nimbarrow"_s, u"toggle-history"_s, u"Nimbarrow"_s, u"Відкрити історію"_s };
    }

    QDBusMessage ask(const QString& method, const QVariantList& arguments)
    {
        auto question = QDBusMessage::createMethodCall(
            u"org.kde.kglobalaccel"_s, u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, method);
        question.setArguments(arguments);
        return answerTo(question, m_bus);
    }

    QList<int> keys(const QString& method)
    {
        return qdbus_cast<QList<int>>(ask(method, { id() }).arguments().value(0));
    }

    // Returns when the compositor has dealt with the keys.
    void type(const QList<unsigned>& codes) const
    {
        for (const auto code : codes)
            org_kde_kwin_fake_input_keyboard_key(m_user, code, 1);
        for (const auto code : codes)
            org_kde_kwin_fake_input_keyboard_key(m_user, code, 0);
        wl_display_roundtrip(m_display);
    }

    QDBusConnection m_bus = QDBusConnection::sessionBus();
    wl_display* m_display = wayland::qtDisplay();
    org_kde_kwin_fake_input* m_user = nullptr;
    std::unique_ptr<KWinWindows> m_applications;
    std::unique_ptr<EditorWindow> m_editor;
};

int main(int argc, char** argv)
{
    const TestFolder home;
    folder = home.path();
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("XDG_CACHE_HOME", home.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    // Without a menu KDE finds no programs.
    home.write(u"menus/applications.menu"_s,
        "<Menu><Name>Applications</Name><DefaultAppDirs/><Include><All/></Include></Menu>");
    const auto write = [&home](const QString& id, const QByteArray& more) {
        home.write("applications/"_L1 + id + ".desktop"_L1, "[Desktop Entry]\nType=Application\n" + more);
    };
    write(u"org.example.editor"_s,
        "Name=Editor\nName[uk]=Редактор\nCategories=Utility;\nExec=" + QByteArray(argv[0])
            + "\nX-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\n");
    write(u"mousepad"_s, "Name=Terminal\nCategories=TerminalEmulator;\nExec=mousepad\n");
    const PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit());
    const PrivateCompositor compositor(PrivateCompositor::Kind::KWin);
    if (!compositor.isRunning())
        qFatal("kwin_wayland does not start");
    qputenv("WAYLAND_DISPLAY", compositor.name());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("GSETTINGS_BACKEND", "memory");
    qputenv("NO_AT_BRIDGE", "1");
    qputenv("QT_QPA_PLATFORM", "wayland");
    const QGuiApplication application(argc, argv);
    KWinInputTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "KWinInputTest.moc"
