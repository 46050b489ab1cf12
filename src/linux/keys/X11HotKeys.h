#pragma once

#include "platform/HotKeys.h"

#include <memory>

namespace nimbarrow {

/// Keys grabbed on the root window, by their place on the keyboard and whatever the locks are. Runs on an X
/// connection of its own.
class X11HotKeys final : public HotKeys {
public:
    X11HotKeys();
    ~X11HotKeys() override;

    [[nodiscard]] std::unique_ptr<Handle> installHandler(Handler handler) override;
    [[nodiscard]] std::unique_ptr<Handle> registerKey(Key key, KeyModifiers modifiers, HotKeyId id) override;

private:
    class Grabs;

    /// Shared with the handles, which may live longer.
    std::shared_ptr<Grabs> m_grabs;
};

} // namespace nimbarrow
