#pragma once

#include "linux/applications/DesktopEntries.h"
#include "linux/applications/X11Applications.h"
#include "support/PrivateBus.h"
#include "support/TestFolder.h"
#include "support/XClient.h"

#include <QProcess>
#include <QTest>

namespace nimbarrow {

using namespace Qt::StringLiterals;

/// A window manager, and a compositing manager where asked for, on the test's private server.
class X11Desktop {
public:
    X11Desktop()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toUtf8());
        m_folder.write(u"i3"_s, "# i3 config file (v4)\nfont pango:monospace 8\nfocus_follows_mouse no\n");
    }

    ~X11Desktop()
    {
        for (auto* process : { &m_compositor, &m_windowManager })
            stop(*process);
    }

    Q_DISABLE_COPY_MOVE(X11Desktop)

    /// A folder for this test alone.
    [[nodiscard]] QString folder() const { return m_folder.path(); }

    /// False when it is not installed or does not come up. "%1" stands for the folder, where i3's
    /// configuration is.
    [[nodiscard]] bool start(const QString& command)
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

    [[nodiscard]] bool startCompositor()
    {
        m_compositor.setStandardErrorFile(QProcess::nullDevice());
        // Before it writes this, its own window above all others takes every click for a moment.
        const auto isUp = m_folder.filePath(u"picom"_s);
        m_compositor.start(u"picom"_s,
            { u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s, u"--write-pid-path"_s, isUp });
        const XClient user("User");
        return m_compositor.waitForStarted()
            && QTest::qWaitFor([&] { return user.isComposited() && QFile::exists(isUp); }, patience);
    }

    void stopCompositor() { stop(m_compositor); }

    /// Maps the window and sees to it that it is the active one.
    [[nodiscard]] bool bringUp(XClient& client, bool fullScreen = false) const
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

private:
    static constexpr auto patience = 20'000; // milliseconds

    static void stop(QProcess& process)
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.terminate();
        if (!process.waitForFinished(patience))
            process.kill();
        process.waitForFinished();
    }

    TestFolder m_folder;
    PrivateBus m_bus;
    QProcess m_windowManager;
    QProcess m_compositor;
};

} // namespace nimbarrow
