#include "support/X11Desktop.h"

#include "linux/applications/DesktopEntries.h"
#include "linux/applications/X11Applications.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr auto patience = 20'000;

}

X11Desktop::X11Desktop()
{
    m_bus.start(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
    if (m_bus.waitForReadyRead())
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readAllStandardOutput().trimmed());
    QFile config(m_folder.filePath(u"i3"_s));
    if (config.open(QIODevice::WriteOnly))
        config.write("# i3 config file (v4)\nfont pango:monospace 8\nfocus_follows_mouse no\n");
}

X11Desktop::~X11Desktop()
{
    for (auto* process : { &m_compositor, &m_windowManager, &m_bus })
        stop(*process);
}

bool X11Desktop::start(const QString& command)
{
    auto words = QProcess::splitCommand(QString(command).replace(u"%1"_s, folder()));
    m_windowManager.setStandardErrorFile(QProcess::nullDevice());
    m_windowManager.start(words.takeFirst(), words);
    if (!m_windowManager.waitForStarted())
        return false;
    const XClient user("User");
    return QTest::qWaitFor(
        [&user] { return user.exists(user.rootWindowProperty("_NET_SUPPORTING_WM_CHECK")); }, patience);
}

bool X11Desktop::startCompositor()
{
    m_compositor.setStandardErrorFile(QProcess::nullDevice());
    m_compositor.start(u"picom"_s, { u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s });
    const XClient user("User");
    return m_compositor.waitForStarted()
        && QTest::qWaitFor([&user] { return user.isComposited(); }, patience);
}

bool X11Desktop::bringUp(XClient& client, bool fullScreen) const
{
    client.map(fullScreen);
    X11Applications applications(std::make_unique<DesktopEntries>(QStringList(), u"C"_s));
    for (auto i = 0; i < 20; ++i) {
        if (QTest::qWaitFor([&client] { return client.isActive(); }, 500))
            return true;
        // A window manager that has just started may take the window for one that was there before it.
        client.map(fullScreen);
        applications.activate({ {}, {}, client.window() });
    }
    return false;
}

void X11Desktop::stop(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(patience))
        process.kill();
    process.waitForFinished();
}

} // namespace nimbarrow
