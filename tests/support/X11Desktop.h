#pragma once

#include "support/XClient.h"

#include <QProcess>
#include <QTemporaryDir>

namespace nimbarrow {

/// A window manager, and a compositing manager where asked for, on the test's private server.
class X11Desktop {
public:
    X11Desktop();
    ~X11Desktop();
    Q_DISABLE_COPY_MOVE(X11Desktop)

    /// A folder for this test alone.
    [[nodiscard]] QString folder() const { return m_folder.path(); }

    /// False when it is not installed or does not come up. "%1" stands for the folder, where i3's
    /// configuration is.
    [[nodiscard]] bool start(const QString& command);
    [[nodiscard]] bool startCompositor();
    void stopCompositor() { stop(m_compositor); }

    /// Maps the window and sees to it that it is the active one.
    [[nodiscard]] bool bringUp(XClient& client, bool fullScreen = false) const;

private:
    static void stop(QProcess& process);

    QTemporaryDir m_folder;
    QProcess m_bus;
    QProcess m_windowManager;
    QProcess m_compositor;
};

} // namespace nimbarrow
