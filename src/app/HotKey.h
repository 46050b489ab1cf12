#pragma once

#include "platform/HotKeys.h"

#include <functional>
#include <memory>

namespace nimbarrow {

/// Command-Shift-V, whichever program is in front.
class HotKey final {
public:
    /// Registers nothing yet. `hotKeys` outlives the hot key.
    explicit HotKey(HotKeys& hotKeys);

    /// Nothing when it is registered already. A combination that another program holds stays without effect.
    void registerKey();
    void unregister();

    std::function<void()> onPressed;

private:
    HotKeys& m_hotKeys;
    std::unique_ptr<HotKeys::Registration> m_registration;
};

} // namespace nimbarrow
