#pragma once

#include "platform/PowerAssertions.h"

#include <QDBusConnection>

#include <optional>

namespace nimbarrow {

class BusInhibition;
class Scheduler;

/// Keeps the display on through the desktop's screen saver, or its portal and the windowing system where
/// there is none, and the computer through the login manager.
class LinuxPowerAssertions final : public PowerAssertions {
public:
    /// Keeps the windowing system from darkening the display, for as long as the result lives; null where it
    /// cannot.
    using Substitute = std::function<std::unique_ptr<Port>()>;

    /// Without a bus, what its services grant cannot be had. The scheduler outlives the assertions.
    LinuxPowerAssertions(const std::optional<QDBusConnection>& session,
        const std::optional<QDBusConnection>& system, Substitute displaySubstitute, Scheduler& scheduler);
    ~LinuxPowerAssertions() override;

    [[nodiscard]] std::unique_ptr<Assertion> create(
        Type type, const QString& name, std::function<void()> failed) override;

private:
    std::unique_ptr<BusInhibition> m_displaySleep;
    std::unique_ptr<BusInhibition> m_systemSleep;
};

} // namespace nimbarrow
