#pragma once

#include "platform/Applications.h"

#include <QList>

namespace nimbarrow {

/// Remembers which programs were brought to the front.
class FakeApplications final : public Applications {
public:
    std::optional<RunningApplication> front;
    QList<RunningApplication> activated;

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override { return front; }
    void activate(const RunningApplication& application) override { activated << application; }
};

} // namespace nimbarrow
