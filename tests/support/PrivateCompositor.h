#pragma once

#include <QByteArray>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace nimbarrow {

/// A compositor without a screen, for one test; it ends with this object, and with the test's process. One
/// that refuses to serve the superuser is run as nobody.
class PrivateCompositor {
public:
    PrivateCompositor();
    ~PrivateCompositor();
    Q_DISABLE_COPY_MOVE(PrivateCompositor)

    /// Both are false when it does not come up.
    [[nodiscard]] bool startSway();
    [[nodiscard]] bool startKWin();

    /// For WAYLAND_DISPLAY.
    [[nodiscard]] QByteArray displayName() const;
    /// A folder for this test alone, which the compositor's user owns.
    [[nodiscard]] QString folder() const { return m_folder.path(); }

    /// Has sway do something, such as "[app_id=foot] focus".
    [[nodiscard]] bool command(const QString& command) const;

    /// Ends it at once, as when it crashes.
    void kill();

    /// For a program on this display.
    [[nodiscard]] QProcessEnvironment environment() const;

    /// Runs another program on this display with `input` on its standard input, and gives its output.
    [[nodiscard]] QByteArray run(
        const QString& program, const QStringList& arguments, const QByteArray& input = {}) const;

private:
    [[nodiscard]] bool start(const QString& program, const QStringList& arguments, const QString& socket);

    QTemporaryDir m_folder;
    QProcess m_process;
    QString m_socket;
};

/// The main function of a test in a session of sway, which must be there before Qt connects to it.
template <typename Test>
int runOnPrivateSway(int argc, char** argv)
{
    PrivateCompositor compositor;
    if (!compositor.startSway()) {
        qCritical("sway does not start");
        return 1;
    }
    const QTemporaryDir home;
    qputenv("WAYLAND_DISPLAY", compositor.displayName());
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("GSETTINGS_BACKEND", "memory");
    qputenv("QT_QPA_PLATFORM", "wayland");
    const QGuiApplication application(argc, argv);
    Test test(compositor);
    return QTest::qExec(&test, argc, argv);
}

} // namespace nimbarrow
