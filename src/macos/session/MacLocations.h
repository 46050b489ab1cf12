#pragma once

#include "platform/Locations.h"

namespace nimbarrow {

/// The folders of the user's library.
class MacLocations final : public Locations {
public:
    [[nodiscard]] QString applicationSupport() const override;
};

} // namespace nimbarrow
