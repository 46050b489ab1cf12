#pragma once

#include "platform/Port.h"

namespace nimbarrow {

/// Port: one running copy of the program in a session.
class Instance : public Port {
public:
    /// True when another copy runs; otherwise this one is the running copy until it ends.
    [[nodiscard]] virtual bool anotherIsRunning() = 0;
};

} // namespace nimbarrow
