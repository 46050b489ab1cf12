#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

namespace nimbarrow {

/// A windowing system without a screen for one test; it ends with this object, and with the test's process.
class PrivateDisplay {
public:
    virtual ~PrivateDisplay() { kill(); }
    Q_DISABLE_COPY_MOVE(PrivateDisplay)

    /// False where it has not come up.
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }

    /// For DISPLAY or WAYLAND_DISPLAY.
    [[nodiscard]] const QByteArray& name() const { return m_name; }

    /// For a program on this display.
    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }

    /// Runs another program on this display with `input` on its standard input, and gives its output.
    [[nodiscard]] QByteArray run(
        const QString& program, const QStringList& arguments, const QByteArray& input = {}) const;

    /// Ends it at once, as when it crashes.
    void kill();

protected:
    PrivateDisplay();

    /// Milliseconds until a program is given up.
    static constexpr int patience = 20'000;

    QProcess m_process;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    QByteArray m_name;
};

} // namespace nimbarrow
