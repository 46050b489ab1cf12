#pragma once

#include "platform/Applications.h"

namespace nimbarrow {

/// A desktop that tells nothing of other programs.
class NoApplications final : public Applications {
public:
    [[nodiscard]] std::optional<RunningApplication> frontmost() const override { return {}; }
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 /*pid*/) const override { return {}; }
    [[nodiscard]] QImage icon(const RunningApplication& /*application*/) const override { return {}; }
    void activate(const RunningApplication& /*application*/) override { }
};

} // namespace nimbarrow
