#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace nimbarrow {

/// A Wayland compositor without a screen for one test; it ends with this object, and with the test's process.
class PrivateCompositor {
public:
    PrivateCompositor();
    ~PrivateCompositor();
    Q_DISABLE_COPY_MOVE(PrivateCompositor)

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
    QTemporaryDir m_folder;
    QString m_socket;
    QProcess m_process;
};

} // namespace nimbarrow
