#pragma once

#include "platform/Port.h"

#include <QString>

#include <functional>
#include <memory>

namespace nimbarrow {

/// Port: asks the system to stay awake.
///
/// The services that grant it are other programs, and nobody waits for them. So `create` answers with what is
/// certain at once: null where there is nobody to ask. Where there is, the assertion counts from that moment,
/// and a service that turns out to be missing or unwilling makes it a failed one afterwards.
class PowerAssertions : public Port {
public:
    enum class Type {
        /// The display goes dark, or locks, because nobody touches the computer.
        PreventUserIdleDisplaySleep,
        /// The computer goes to sleep.
        PreventSystemSleep,
    };

    /// Holding it prevents that sleep, also over a restart of the service that grants it; dropping it, or the
    /// end of the process, ends that. However many of one type are held, and when one follows another within
    /// the same turn of the main loop, the system sees one that has no gap.
    class Assertion : public Port { };

    /// `name` tells the user who prevents it. `failed` is called later and at most once, never when the
    /// assertion is gone; the assertion may be dropped inside it.
    [[nodiscard]] virtual std::unique_ptr<Assertion> create(
        Type type, const QString& name, std::function<void()> failed)
        = 0;
};

} // namespace nimbarrow
