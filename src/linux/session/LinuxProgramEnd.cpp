#include "linux/session/LinuxProgramEnd.h"

#include "linux/session/BusCalls.h"

#include <QGuiApplication>
#include <QSessionManager>
#include <QThread>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr std::array endingSignals { SIGTERM, SIGINT, SIGHUP };
constexpr unsigned longestEnd = 10; // s

LinuxProgramEnd* living = nullptr;
/// What a signal writes is read by the main loop: next to nothing may be done inside a signal.
std::array<int, 2> signalPipe { -1, -1 };

void writeToPipe(int /*signal*/)
{
    const int error = errno;
    ::alarm(longestEnd);
    const char byte = 0;
    // A full pipe wakes the main loop as well.
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
    errno = error;
}

/// Qt ends the process by itself, from the depths of its event loop, when the display has gone.
void endWithoutDisplay(int status)
{
    if (!living || QThread::currentThread() != living->thread())
        return;
    Q_EMIT living->displayLost();
    // What lies on the stack is not unwound, so nothing else that runs at the exit may find it half alive.
    ::_exit(status);
}

/// So it does when the X server has gone, which is how a session may end.
void endAtExit()
{
    endWithoutDisplay(0);
}

QtMessageHandler printMessage = nullptr;

/// A compositor that has gone, or has had enough of the program, ends the process past everything that runs
/// at the exit, on whichever of Qt's threads has noticed it first. All there is before that is what Qt says.
void followMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type != QtWarningMsg || !message.startsWith("The Wayland connection "_L1)) {
        printMessage(type, context, message);
        return;
    }
    static std::atomic_flag isSaid;
    if (!isSaid.test_and_set())
        printMessage(type, context, message);
    endWithoutDisplay(1);
    QMetaObject::invokeMethod(
        qApp, [] { endWithoutDisplay(1); }, Qt::QueuedConnection);
    // This thread would end the process as soon as it went on.
    while (QThread::currentThread() != qApp->thread())
        ::pause();
}

void setHandler(void (*handler)(int))
{
    struct sigaction action { };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : endingSignals) {
        struct sigaction before { };
        ::sigaction(signal, nullptr, &before);
        // Who started the program with a signal ignored wants that, as nohup does.
        if (before.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

LinuxProgramEnd::LinuxProgramEnd(const std::optional<QDBusConnection>& system)
    : m_notifier(QSocketNotifier::Read)
{
    // At the exit the last one that was registered comes first, before anything of Qt's goes.
    [[maybe_unused]] static const int registered = std::atexit(endAtExit);
    living = this;
    printMessage = qInstallMessageHandler(followMessage);
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
        connect(&m_notifier, &QSocketNotifier::activated, this, &LinuxProgramEnd::readSignals);
        m_notifier.setSocket(signalPipe[0]);
        m_notifier.setEnabled(true);
        setHandler(writeToPipe);
    }
    followSessionManager();
    if (system) {
        followBusSignal(*system, u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s,
            u"PrepareForShutdown"_s, this, SLOT(prepareForShutdown(bool)));
    }
}

LinuxProgramEnd::~LinuxProgramEnd()
{
    living = nullptr;
    qInstallMessageHandler(printMessage);
    setHandler(SIG_DFL);
    m_notifier.setEnabled(false);
    for (int& end : signalPipe) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
}

void LinuxProgramEnd::followSessionManager()
{
    const auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (!application)
        return;
    // Directly: the session manager is answered when this returns, and ends the program by an event
    // afterwards.
    connect(
        application, &QGuiApplication::commitDataRequest, this,
        [this](QSessionManager& manager) {
            // Whether the program starts with the session is a setting of its own.
            manager.setRestartHint(QSessionManager::RestartNever);
            Q_EMIT sessionMayEnd();
        },
        Qt::DirectConnection);
}

void LinuxProgramEnd::readSignals()
{
    std::array<char, 16> bytes {};
    while (::read(signalPipe[0], bytes.data(), bytes.size()) > 0) { }
    Q_EMIT requested();
}

void LinuxProgramEnd::prepareForShutdown(bool begins)
{
    if (begins)
        Q_EMIT sessionMayEnd();
}

} // namespace nimbarrow
