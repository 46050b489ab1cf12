#pragma once

#include "platform/Locations.h"

namespace nimbarrow {

/// The folder that the test names.
class FakeLocations final : public Locations {
public:
    QString folder;

    [[nodiscard]] QString applicationSupport() const override { return folder; }
};

} // namespace nimbarrow
