#pragma once

#include "platform/HotKeys.h"

namespace nimbarrow {

/// Hot keys of the Carbon event manager, which need no permission of the user.
class MacHotKeys final : public HotKeys {
public:
    [[nodiscard]] std::unique_ptr<Handle> installHandler(Handler handler) override;
    [[nodiscard]] std::unique_ptr<Handle> registerKey(Key key, KeyModifiers modifiers, HotKeyId id) override;
};

} // namespace nimbarrow
