#pragma once

#include "platform/Locations.h"

namespace nimbarrow {

/// The user's folders as the XDG base directories name them.
class XdgLocations final : public Locations {
public:
    [[nodiscard]] QString applicationSupport() const override;

    /// Where settings go; absolute, without a trailing slash.
    [[nodiscard]] static QString configuration();
};

} // namespace nimbarrow
