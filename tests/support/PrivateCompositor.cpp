#include "support/PrivateCompositor.h"

#include <QFile>
#include <QStandardPaths>

#include <csignal>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr int patience = 20'000; // milliseconds
constexpr uid_t nobody = 65534;

} // namespace

PrivateCompositor::PrivateCompositor()
{
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    if (qEnvironmentVariableIsEmpty("NIMBARROW_COMPOSITOR_LOG"))
        m_process.setStandardErrorFile(QProcess::nullDevice());
    else
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

PrivateCompositor::~PrivateCompositor()
{
    kill();
}

void PrivateCompositor::kill()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

QByteArray PrivateCompositor::displayName() const
{
    return QFile::encodeName(m_socket);
}

bool PrivateCompositor::startSway()
{
    QFile config(folder() + u"/config"_s);
    if (!config.open(QIODevice::WriteOnly))
        return false;
    config.write("output HEADLESS-1 resolution 1512x982\nxwayland disable\nfocus_follows_mouse no\n");
    config.close();
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& other : { u"WAYLAND_DISPLAY"_s, u"DISPLAY"_s, u"DBUS_SESSION_BUS_ADDRESS"_s })
        environment.remove(other);
    environment.insert(u"XDG_RUNTIME_DIR"_s, folder());
    environment.insert(u"SWAYSOCK"_s, folder() + u"/sway"_s);
    environment.insert(u"WLR_BACKENDS"_s, u"headless"_s);
    environment.insert(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    m_process.setProcessEnvironment(environment);
    QStringList command { u"sway"_s, u"--config"_s, config.fileName() };
    if (::geteuid() == 0) {
        if (::chown(QFile::encodeName(folder()).constData(), nobody, nobody) != 0
            || ::chmod(QFile::encodeName(config.fileName()).constData(), 0644) != 0)
            return false;
        const auto user = QString::number(nobody);
        // A signal of the parent's death is forgotten where the user changes.
        command = QStringList { u"setpriv"_s, u"--reuid="_s + user, u"--regid="_s + user, u"--clear-groups"_s,
            u"--pdeathsig=KILL"_s }
            + command;
    }
    return start(command.takeFirst(), command, folder() + u"/wayland-1"_s);
}

bool PrivateCompositor::startKWin()
{
    // The installed one has a capability of its own, for which it may not be run where that cannot be had.
    const auto program = folder() + u"/kwin_wayland"_s;
    QFile::copy(QStandardPaths::findExecutable(u"kwin_wayland"_s), program);
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& other : { u"WAYLAND_DISPLAY"_s, u"DISPLAY"_s, u"QT_QPA_PLATFORM"_s })
        environment.remove(other);
    environment.insert(u"XDG_RUNTIME_DIR"_s, folder());
    // Without a graphics driver.
    environment.insert(u"KWIN_COMPOSE"_s, u"Q"_s);
    m_process.setProcessEnvironment(environment);
    return start(program,
        { u"--virtual"_s, u"--no-lockscreen"_s, u"--width"_s, u"1512"_s, u"--height"_s, u"982"_s,
            u"--socket"_s, u"wayland-1"_s },
        folder() + u"/wayland-1"_s);
}

bool PrivateCompositor::command(const QString& command) const
{
    return QProcess::execute(
               u"swaymsg"_s, { u"--quiet"_s, u"--socket"_s, folder() + u"/sway"_s, u"--"_s, command })
        == 0;
}

QProcessEnvironment PrivateCompositor::environment() const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"WAYLAND_DISPLAY"_s, m_socket);
    environment.insert(u"XDG_RUNTIME_DIR"_s, folder());
    return environment;
}

QByteArray PrivateCompositor::run(
    const QString& program, const QStringList& arguments, const QByteArray& input) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.setStandardErrorFile(QProcess::nullDevice());
    // A clipboard tool stays in the background and would keep the pipe open.
    if (!input.isNull())
        process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(patience);
    return input.isNull() ? process.readAllStandardOutput() : QByteArray();
}

bool PrivateCompositor::start(const QString& program, const QStringList& arguments, const QString& socket)
{
    m_socket = socket;
    m_process.start(program, arguments);
    return m_process.waitForStarted(patience)
        && QTest::qWaitFor(
            [this] { return m_process.state() == QProcess::NotRunning || QFile::exists(m_socket); }, patience)
        && m_process.state() == QProcess::Running;
}

} // namespace nimbarrow
