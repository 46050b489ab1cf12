#pragma once

#include "platform/Applications.h"

namespace nimbarrow {

/// The running programs as the workspace knows them. A handle is a process identifier.
class MacApplications final : public Applications {
public:
    [[nodiscard]] std::optional<RunningApplication> frontmost() const override;
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 pid) const override;
    [[nodiscard]] QImage icon(const RunningApplication& application) const override;
    void activate(const RunningApplication& application) override;
};

} // namespace nimbarrow
