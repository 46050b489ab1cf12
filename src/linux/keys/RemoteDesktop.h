#pragma once

#include "platform/AccessibilityTrust.h"
#include "platform/Keystrokes.h"
#include "platform/WorkQueue.h"

#include <QDBusConnection>

#include <functional>
#include <memory>
#include <optional>

namespace nimbarrow {

class DesktopApplications;
struct PortalAnswer;

/// The desktop's leave to type, as its portal gives it: the user is asked once, and a token remembers it. A
/// session of the portal lasts for one keystroke, for as long as it stands the desktop shows that somebody
/// controls it.
class RemoteDesktop final : public AccessibilityTrust {
    Q_OBJECT

public:
    enum class State {
        /// There is no such portal, or it is not known yet.
        Unavailable,
        NotDetermined,
        /// The user said no in this run of the program.
        NotTrusted,
        Trusted,
    };

    /// `tokenFile` is the path of a file that only its owner may read; `queues` outlives this. Without a bus
    /// there is no portal.
    RemoteDesktop(std::optional<QDBusConnection> bus, QString tokenFile, WorkQueues& queues);
    ~RemoteDesktop() override;

    [[nodiscard]] State state() const;
    [[nodiscard]] bool isTrusted() const override { return state() == State::Trusted; }
    /// Has the desktop ask the user; nothing while it does.
    void prompt() override;

    /// Types a chord of X11 keysyms, the modifiers first. Nothing where it is not trusted, or while another
    /// one is under way.
    void type(const QList<int>& chord);

private:
    void askVersion();
    void begin(std::function<void()> begun);
    void selectKeyboard(std::function<void()> begun);
    void start(std::function<void()> begun);
    void takeToken(const QString& token);
    void fail(const PortalAnswer& answer);
    void typeNext(QList<std::pair<int, bool>> keys);
    void close();

    std::optional<QDBusConnection> m_bus;
    QString m_tokenFile;
    std::unique_ptr<WorkQueue> m_files;
    bool m_hasPortal = false;
    bool m_isRefused = false;
    bool m_isBusy = false;
    /// Good for one session, which gives the next one.
    QString m_token;
    QString m_session;
    /// Owns the questions that are on their way. Goes first, and nothing is answered any more.
    QObject m_questions;
};

/// Types what the desktop's portal lets it type.
class RemoteDesktopKeystrokes final : public Keystrokes {
public:
    /// `applications` tells what is in front; both live longer.
    RemoteDesktopKeystrokes(RemoteDesktop& desktop, const DesktopApplications& applications);

    void postPaste() override;

private:
    RemoteDesktop& m_desktop;
    const DesktopApplications& m_applications;
};

} // namespace nimbarrow
