#pragma once

#include "platform/KeyEvent.h"
#include "platform/Port.h"

#include <functional>
#include <memory>

namespace nimbarrow {

/// Port: keys that reach the program whichever other program is in front.
class HotKeys : public Port {
public:
    /// Holds a registration; destroying it ends that, also from inside its own `pressed`.
    class Registration : public Port { };

    /// `pressed` is called on the main thread each time the key goes down while exactly these modifiers are
    /// held, and not again while it stays down. Never null: a combination that another program holds, or that
    /// the system refuses, gives a registration that does nothing.
    [[nodiscard]] virtual std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed)
        = 0;
};

} // namespace nimbarrow
