#pragma once

#include "platform/PowerAssertions.h"

#include <QDBusConnection>

#include <optional>

namespace nimbarrow {

class BusInhibition;

/// Keeps the display on through the desktop's screen saver, or its portal where there is none, and the
/// computer through the login manager.
class LinuxPowerAssertions final : public PowerAssertions {
public:
    /// Without a bus, what its services grant cannot be had.
    LinuxPowerAssertions(
        const std::optional<QDBusConnection>& session, const std::optional<QDBusConnection>& system);
    ~LinuxPowerAssertions() override;

    [[nodiscard]] std::unique_ptr<Assertion> create(
        Type type, const QString& name, std::function<void()> failed) override;

private:
    std::unique_ptr<BusInhibition> m_displaySleep;
    std::unique_ptr<BusInhibition> m_systemSleep;
};

} // namespace nimbarrow
