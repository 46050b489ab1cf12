#pragma once

#include "platform/HotKeys.h"

#include <memory>

namespace nimbarrow {

/// Keys grabbed on the root window, by their place on the keyboard and whatever the locks are: the letters of
/// shortcuts alone. Runs on an X connection of its own.
class X11HotKeys final : public HotKeys {
public:
    X11HotKeys();
    ~X11HotKeys() override;

    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override;

    /// Whether another program holds this combination, so that registering it is without effect.
    [[nodiscard]] bool isTaken(Key key, KeyModifiers modifiers);

private:
    class Grabs;

    /// Shared with the registrations, which may live longer.
    std::shared_ptr<Grabs> m_grabs;
};

} // namespace nimbarrow
