#pragma once

#include "platform/HotKeys.h"

namespace nimbarrow {

/// Hot keys of the Carbon event manager, which need no permission of the user.
class MacHotKeys final : public HotKeys {
public:
    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override;

private:
    /// The event manager tells by it which key went down.
    quint32 m_lastNumber = 0;
};

} // namespace nimbarrow
