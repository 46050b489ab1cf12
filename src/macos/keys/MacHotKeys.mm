#include "macos/keys/MacHotKeys.h"

#include "macos/keys/CarbonHotKey.h"
#include "macos/keys/KeyCodes.h"

namespace nimbarrow {

namespace {

template <typename Held>
class Holding final : public HotKeys::Handle {
public:
    template <typename... Arguments>
    explicit Holding(Arguments&&... arguments)
        : m_held(std::forward<Arguments>(arguments)...)
    {
    }

private:
    Held m_held;
};

/// For a key that has no place on this system's keyboards.
class HoldingNothing final : public HotKeys::Handle { };

} // namespace

std::unique_ptr<HotKeys::Handle> MacHotKeys::installHandler(Handler handler)
{
    return std::make_unique<Holding<CarbonHotKeyHandler>>(
        [handler = std::move(handler)](quint32 signature, quint32 number) {
            handler({ signature, number });
        });
}

std::unique_ptr<HotKeys::Handle> MacHotKeys::registerKey(Key key, KeyModifiers modifiers, HotKeyId id)
{
    const auto place = keycodes::placeOf(key);
    if (!place)
        return std::make_unique<HoldingNothing>();
    return std::make_unique<Holding<CarbonHotKey>>(
        *place, keycodes::hotKeyModifiers(modifiers), id.signature, id.number);
}

} // namespace nimbarrow
