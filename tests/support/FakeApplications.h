#pragma once

#include "platform/Applications.h"

#include <QHash>
#include <QList>

namespace nimbarrow {

/// Remembers which programs were brought to the front.
class FakeApplications final : public Applications {
public:
    std::optional<RunningApplication> front;
    QList<RunningApplication> activated;
    QHash<qint32, RunningApplication> processes;
    /// By identifier.
    QHash<QString, QImage> icons;

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override { return front; }
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 pid) const override
    {
        return processes.contains(pid) ? std::optional(processes.value(pid)) : std::nullopt;
    }
    [[nodiscard]] QImage icon(const RunningApplication& application) const override
    {
        return icons.value(application.identifier);
    }
    void activate(const RunningApplication& application) override { activated << application; }
};

} // namespace nimbarrow
