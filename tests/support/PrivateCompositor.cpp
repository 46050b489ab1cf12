#include "support/PrivateCompositor.h"

#include "support/RunProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr uid_t nobody = 65'534;

/// The socket is there before the compositor listens.
bool listens(const QString& socket)
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, socket.toLocal8Bit().constData(), sizeof address.sun_path);
    const int file = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answered = ::connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(file);
    return answered;
}

} // namespace

PrivateCompositor::PrivateCompositor(Kind kind)
    : m_socket(m_folder.filePath(u"wayland-1"_s))
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& other : { u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s })
        environment.remove(other);
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
    if (kind == Kind::Sway)
        startSway(environment);
    else
        startKWin(environment);
    QElapsedTimer waited;
    waited.start();
    while (!listens(m_socket) && waited.elapsed() < patience)
        QThread::msleep(5);
}

void PrivateCompositor::startSway(QProcessEnvironment environment)
{
    const auto configuration = m_folder.filePath(u"config"_s);
    QFile file(configuration);
    if (file.open(QIODevice::WriteOnly))
        file.write("output HEADLESS-1 resolution 1512x982\nxwayland disable\nfocus_follows_mouse no\n");
    file.close();
    environment.insert(u"HOME"_s, m_folder.path());
    environment.insert(u"SWAYSOCK"_s, m_folder.filePath(u"sway"_s));
    environment.insert(u"WLR_BACKENDS"_s, u"headless"_s);
    environment.insert(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    // It refuses to run as root.
    const bool isRoot = ::getuid() == 0;
    if (isRoot) {
        for (const auto& path : { m_folder.path(), configuration })
            [[maybe_unused]] const auto given = ::chown(path.toLocal8Bit().constData(), nobody, nobody);
    }
    m_process.setChildProcessModifier([isRoot] {
        if (isRoot && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            ::_exit(1);
        // A test that crashes must not leave it behind.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    });
    start(u"sway"_s, { u"-c"_s, configuration }, environment);
}

void PrivateCompositor::startKWin(QProcessEnvironment environment)
{
    // The installed one has a capability of its own, and may not be run where that cannot be had.
    const auto program = m_folder.filePath(u"kwin_wayland"_s);
    QFile::copy(QStandardPaths::findExecutable(u"kwin_wayland"_s), program);
    // Without a graphics driver.
    environment.insert(u"KWIN_COMPOSE"_s, u"Q"_s);
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    start(program,
        { u"--virtual"_s, u"--no-lockscreen"_s, u"--width"_s, u"1512"_s, u"--height"_s, u"982"_s,
            u"--socket"_s, u"wayland-1"_s },
        environment);
}

void PrivateCompositor::start(
    const QString& program, const QStringList& arguments, const QProcessEnvironment& environment)
{
    m_process.setProcessEnvironment(environment);
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.start(program, arguments);
    m_process.waitForStarted(patience);
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

QProcessEnvironment PrivateCompositor::environment() const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"WAYLAND_DISPLAY"_s, m_socket);
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
    environment.insert(u"SWAYSOCK"_s, m_folder.filePath(u"sway"_s));
    return environment;
}

QByteArray PrivateCompositor::run(
    const QString& program, const QStringList& arguments, const QByteArray& input) const
{
    return runProgram(environment(), program, arguments, input);
}

} // namespace nimbarrow
