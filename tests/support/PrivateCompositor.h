#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

namespace nimbarrow {

/// A Wayland compositor without a screen for one test; it ends with this object, and with the test's process.
class PrivateCompositor {
public:
    enum class Kind { Sway, KWin };

    explicit PrivateCompositor(Kind kind = Kind::Sway);
    ~PrivateCompositor();
    Q_DISABLE_COPY_MOVE(PrivateCompositor)

    /// False where it has not come up.
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }

    /// For WAYLAND_DISPLAY, the path of its socket.
    [[nodiscard]] QByteArray displayName() const { return m_socket.toLocal8Bit(); }

    /// Ends the compositor at once, as when it crashes.
    void kill();

    /// For a program on this display.
    [[nodiscard]] QProcessEnvironment environment() const;

    /// Runs another program on this display with `input` on its standard input, and gives its output.
    [[nodiscard]] QByteArray run(
        const QString& program, const QStringList& arguments, const QByteArray& input = {}) const;

private:
    void start(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment);
    void startSway(QProcessEnvironment environment);
    void startKWin(QProcessEnvironment environment);

    QTemporaryDir m_folder;
    QString m_socket;
    QProcess m_process;
};

} // namespace nimbarrow
