#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

namespace nimbarrow {

/// An X server without a screen for one test program, on a display number that the server picks itself.
class PrivateXServer {
public:
    explicit PrivateXServer(const QStringList& extraArgs = {});
    ~PrivateXServer();
    Q_DISABLE_COPY_MOVE(PrivateXServer)

    [[nodiscard]] bool isRunning() const { return !m_displayName.isEmpty(); }

    /// For DISPLAY, such as ":7".
    [[nodiscard]] QByteArray displayName() const { return m_displayName; }

private:
    QProcess m_process;
    QByteArray m_displayName;
};

} // namespace nimbarrow
