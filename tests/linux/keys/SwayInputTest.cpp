#include "linux/applications/DesktopEntries.h"
#include "linux/applications/ForeignToplevels.h"
#include "linux/display/WaylandResources.h"
#include "linux/keys/VirtualKeyboardKeystrokes.h"
#include "support/EditorWindow.h"
#include "support/PrivateCompositor.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QClipboard>
#include <QGuiApplication>

class SwayInputTest : public QObject {
    Q_OBJECT

public:
    explicit SwayInputTest(const PrivateCompositor& compositor)
        : m_compositor(compositor)
    {
    }

private Q_SLOTS:
    void initTestCase()
    {
        write(u"org.example.editor"_s, "Name=Editor\nName[uk]=Редактор\nCategories=Utility;\n");
        write(u"sh"_s, "Name=Shell\nStartupWMClass=terminal.of.test\n");
        m_applications = std::make_unique<ForeignToplevels>(
            m_display, std::make_unique<DesktopEntries>(QStringList(m_folder.path()), u"uk_UA"_s));
        m_keystrokes = std::make_unique<VirtualKeyboardKeystrokes>(m_display, *m_applications);
        QVERIFY(m_applications->isAvailable());
        QVERIFY(m_keystrokes->isAvailable());
        QVERIFY(!m_applications->frontmost());
        m_editor = std::make_unique<EditorWindow>();
        QTRY_COMPARE(front(), u"org.example.editor"_s);
    }

    void frontProgramIsNamedAndComesBack()
    {
        const auto editor = m_applications->frontmost();
        QCOMPARE(editor->name, u"Редактор"_s);
        QProcess other;
        startTerminal(other, u"some.tool"_s, u"sleep 60"_s);
        QTRY_COMPARE(m_applications->frontmost().value_or(RunningApplication {}).name, u"some.tool"_s);
        QVERIFY(!m_applications->isTerminalInFront());
        const auto tool = *m_applications->frontmost();
        QTRY_VERIFY(m_editor->isLeft());

        m_applications->activate(*editor);
        QTRY_COMPARE(m_applications->frontmost(), editor);
        QTRY_VERIFY(m_editor->isActive());
        // A workspace where nothing is.
        QVERIFY(command(u"workspace empty"_s));
        QTRY_VERIFY(!m_applications->frontmost());
        m_applications->activate(tool);
        QTRY_COMPARE(m_applications->frontmost(), std::optional(tool));
        QTRY_VERIFY(m_editor->isLeft());

        end(other);
        QTRY_COMPARE(m_applications->frontmost(), editor);
        QTRY_VERIFY(m_editor->isActive());
        m_applications->activate(tool);
        QTest::qWait(50);
        QCOMPARE(m_applications->frontmost(), editor);
    }

    void playerComesForwardWithItsTerminal()
    {
        QProcess terminal;
        const auto pid = m_folder.filePath(u"pid"_s);
        startTerminal(terminal, u"terminal.of.test"_s, u"sleep 60 & echo $! >"_s + pid + u"; wait"_s);
        // The shell may run before the terminal has its window.
        QTRY_COMPARE(front(), u"sh"_s);
        QTRY_VERIFY(m_editor->isLeft());
        QTRY_VERIFY(QFile(pid).size() > 1);
        m_applications->activate(*editorInFront());
        QTRY_COMPARE(front(), u"org.example.editor"_s);
        const auto player = m_applications->withProcess(readFile(pid).trimmed().toInt());
        QVERIFY(player);
        m_applications->activate(*player);
        QTRY_COMPARE(front(), u"sh"_s);
        QTRY_VERIFY(m_editor->isLeft());
        end(terminal);
    }

    void pasteReachesANativeWindow()
    {
        QTRY_COMPARE(front(), u"org.example.editor"_s);
        QProcess copied;
        copied.start(u"wl-copy"_s, { u"--foreground"_s, u"скопійоване"_s });
        QTRY_VERIFY(m_editor->isActive());
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), u"скопійоване"_s);
        m_keystrokes->postPaste();
        QTRY_COMPARE(m_editor->text(), u"скопійоване"_s);
        // No modifier is left behind.
        QVERIFY(QProcess::execute(u"wtype"_s, { u"v"_s }) == 0);
        QTRY_COMPARE(m_editor->text(), u"скопійованеv"_s);
        end(copied);
    }

    void cleanupTestCase()
    {
        m_editor.reset();
        m_keystrokes.reset();
        m_applications.reset();
    }

private:
    [[nodiscard]] QString front() const
    {
        return m_applications->frontmost().value_or(RunningApplication {}).identifier;
    }

    [[nodiscard]] std::optional<RunningApplication> editorInFront() const
    {
        if (!command(u"[app_id=org.example.editor] focus"_s) || !QTest::qWaitFor([this] {
                return front() == u"org.example.editor"_s && m_editor->isActive();
            }))
            return {};
        return m_applications->frontmost();
    }

    [[nodiscard]] bool command(const QString& words) const
    {
        return m_compositor.run(u"swaymsg"_s, { u"--raw"_s, words }).contains("\"success\": true");
    }

    static void startTerminal(QProcess& process, const QString& id, const QString& script)
    {
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(u"foot"_s, { u"--config=/dev/null"_s, u"--app-id="_s + id, u"sh"_s, u"-c"_s, script });
        QVERIFY(process.waitForStarted());
    }

    static void end(QProcess& process)
    {
        process.terminate();
        QTRY_COMPARE(process.state(), QProcess::NotRunning);
    }

    void write(const QString& id, const QByteArray& more) const
    {
        m_folder.write("applications/"_L1 + id + ".desktop"_L1, "[Desktop Entry]\nType=Application\n" + more);
    }

    const PrivateCompositor& m_compositor;
    wl_display* m_display = wayland::qtDisplay();
    TestFolder m_folder;
    std::unique_ptr<ForeignToplevels> m_applications;
    std::unique_ptr<VirtualKeyboardKeystrokes> m_keystrokes;
    std::unique_ptr<EditorWindow> m_editor;
};

int main(int argc, char** argv)
{
    const PrivateCompositor compositor;
    if (!compositor.isRunning())
        qFatal("sway does not start");
    const QTemporaryDir home;
    qputenv("WAYLAND_DISPLAY", compositor.name());
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "wayland");
    const QGuiApplication application(argc, argv);
    SwayInputTest test(compositor);
    return QTest::qExec(&test, argc, argv);
}

#include "SwayInputTest.moc"
