#pragma once

#include "platform/Instance.h"

#include <optional>

namespace nimbarrow {

/// The one copy of a session owns a name on the message bus; without a bus it holds a locked file. Both end
/// with the process, however it ends.
class BusInstance final : public Instance {
public:
    BusInstance() = default;
    ~BusInstance() override;

    [[nodiscard]] bool anotherIsRunning() override;

private:
    [[nodiscard]] bool anotherHoldsLock();

    std::optional<bool> m_anotherIsRunning;
    int m_lock = -1;
};

} // namespace nimbarrow
