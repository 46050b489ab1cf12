#pragma once

#include "platform/KeyEvent.h"
#include "platform/Port.h"

#include <QtGlobal>

#include <functional>
#include <memory>

namespace nimbarrow {

/// Who a hot key belongs to, and which of its keys it is.
struct HotKeyId {
    quint32 signature = 0;
    quint32 number = 0;

    friend bool operator==(const HotKeyId&, const HotKeyId&) = default;
};

/// Port: keys that reach the program whichever other program is in front.
class HotKeys : public Port {
public:
    /// Holds a registration or a handler; destroying it ends that.
    class Handle : public Port { };

    using Handler = std::function<void(HotKeyId)>;

    /// `handler` is called on the main thread for every registered key that goes down.
    [[nodiscard]] virtual std::unique_ptr<Handle> installHandler(Handler handler) = 0;

    /// Never null: a combination that another program holds gives a handle that does nothing.
    [[nodiscard]] virtual std::unique_ptr<Handle> registerKey(Key key, KeyModifiers modifiers, HotKeyId id)
        = 0;
};

} // namespace nimbarrow
