#include "support/PrivateCompositor.h"

#include "support/TestFolder.h"

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QThread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

/// The socket is there before the compositor listens.
bool listens(const QByteArray& socket)
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, socket.constData(), sizeof address.sun_path);
    const int file = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answered = ::connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(file);
    return answered;
}

} // namespace

PrivateCompositor::PrivateCompositor(Kind kind)
{
    for (const auto& other : { u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s })
        m_environment.remove(other);
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
    m_environment.insert(u"SWAYSOCK"_s, m_folder.filePath(u"sway"_s));
    m_process.setStandardOutputFile(QProcess::nullDevice());
    if (kind == Kind::Sway)
        startSway();
    else
        startKWin();
    m_process.waitForStarted(patience);
    const auto socket = m_folder.filePath(u"wayland-1"_s);
    m_name = socket.toLocal8Bit();
    m_environment.insert(u"WAYLAND_DISPLAY"_s, socket);
    QElapsedTimer waited;
    waited.start();
    while (!listens(m_name) && waited.elapsed() < patience)
        QThread::msleep(5);
}

void PrivateCompositor::startSway()
{
    const auto configuration = m_folder.filePath(u"config"_s);
    writeFile(
        configuration, "output HEADLESS-1 resolution 1512x982\nxwayland disable\nfocus_follows_mouse no\n");
    auto environment = m_environment;
    environment.insert(u"HOME"_s, m_folder.path());
    environment.insert(u"WLR_BACKENDS"_s, u"headless"_s);
    environment.insert(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    m_process.setProcessEnvironment(environment);
    QStringList command { u"sway"_s, u"-c"_s, configuration };
    // It refuses to run as root.
    if (::getuid() == 0) {
        constexpr uid_t nobody = 65'534;
        if (::chown(QFile::encodeName(m_folder.path()).constData(), nobody, nobody) != 0)
            qFatal("The compositor gets no folder.");
        const auto id = QString::number(nobody);
        command = QStringList {
            u"setpriv"_s, u"--pdeathsig=KILL"_s, u"--clear-groups"_s, u"--reuid"_s, id, u"--regid"_s, id
        } + command;
    }
    m_process.start(command.takeFirst(), command);
}

void PrivateCompositor::startKWin()
{
    // The installed one has a capability of its own, and may not be run where that cannot be had.
    const auto program = m_folder.filePath(u"kwin_wayland"_s);
    QFile::copy(QStandardPaths::findExecutable(u"kwin_wayland"_s), program);
    auto environment = m_environment;
    // Without a graphics driver.
    environment.insert(u"KWIN_COMPOSE"_s, u"Q"_s);
    m_process.setProcessEnvironment(environment);
    m_process.start(
        program, u"--virtual --no-lockscreen --width 1512 --height 982 --socket wayland-1"_s.split(u' '));
}

} // namespace nimbarrow
