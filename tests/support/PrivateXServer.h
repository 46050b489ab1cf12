#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

namespace nimbarrow {

/// An X server for one test, on a display number that the server picks; it ends with this object, and with
/// the test's process.
class PrivateXServer {
public:
    explicit PrivateXServer(const QStringList& extraArgs = {});
    ~PrivateXServer();
    Q_DISABLE_COPY_MOVE(PrivateXServer)

    [[nodiscard]] bool isRunning() const { return !m_displayName.isEmpty(); }

    /// For DISPLAY, such as ":7"; empty when the server did not start.
    [[nodiscard]] const QByteArray& displayName() const { return m_displayName; }

    /// Ends the server at once, as when it crashes.
    void kill();

    /// Runs another program on this display with `input` on its standard input, and gives its output.
    [[nodiscard]] QByteArray run(
        const QString& program, const QStringList& arguments, const QByteArray& input = {}) const;

private:
    QProcess m_process;
    QByteArray m_displayName;
};

} // namespace nimbarrow
