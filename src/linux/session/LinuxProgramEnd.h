#pragma once

#include "platform/ProgramEnd.h"

#include <QDBusConnection>
#include <QSocketNotifier>

#include <optional>

namespace nimbarrow {

/// The ways in which a session ends a program: by a signal (SIGTERM, SIGINT, SIGHUP), by its session manager,
/// by the login manager's announcement and by taking the display away. At most one in a process.
///
/// A program that has not ended 10 s after a signal is ended by the kernel. Without its compositor it ends
/// with 1, so that whoever watches over it may start it anew.
class LinuxProgramEnd final : public ProgramEnd {
    Q_OBJECT

public:
    /// Made behind the application object. `system` is the message bus on which the login manager speaks.
    explicit LinuxProgramEnd(const std::optional<QDBusConnection>& system);
    ~LinuxProgramEnd() override;

private Q_SLOTS:
    void prepareForShutdown(bool begins);

private:
    void followSessionManager();
    void readSignals();

    QSocketNotifier m_notifier;
};

} // namespace nimbarrow
