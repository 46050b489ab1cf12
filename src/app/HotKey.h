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
    void installHandlerIfNeeded();

    HotKeys& m_hotKeys;
    // The handler goes last: no key may arrive without one.
    std::unique_ptr<HotKeys::Handle> m_handler;
    std::unique_ptr<HotKeys::Handle> m_hotKey;
};

} // namespace nimbarrow
