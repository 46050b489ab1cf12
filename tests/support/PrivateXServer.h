#pragma once

#include <QByteArray>
#include <QProcess>

namespace nimbarrow {

/// An X server for one test, on a free display number; it ends with this object, and with the test's process.
class PrivateXServer {
public:
    explicit PrivateXServer(const QByteArray& screen = "1280x800x24");
    ~PrivateXServer();
    Q_DISABLE_COPY_MOVE(PrivateXServer)

    /// Such as ":7"; empty when the server did not start.
    [[nodiscard]] const QByteArray& display() const { return m_display; }

    /// Ends the server at once, as when it crashes.
    void kill();

    /// Runs another program on this display with `input` on its standard input, and gives its output.
    [[nodiscard]] QByteArray run(
        const QString& program, const QStringList& arguments, const QByteArray& input = {}) const;

private:
    QProcess m_server;
    QByteArray m_display;
};

} // namespace nimbarrow
