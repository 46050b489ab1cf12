#pragma once

#include "platform/Port.h"

#include <QString>

namespace nimbarrow {

/// Port: where the program keeps its files.
class Locations : public Port {
public:
    /// The absolute path of the folder that holds the user's application data, without a trailing slash.
    [[nodiscard]] virtual QString applicationSupport() const = 0;
};

} // namespace nimbarrow
