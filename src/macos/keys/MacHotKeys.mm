#include "macos/keys/MacHotKeys.h"

#include "macos/keys/CarbonHotKey.h"
#include "macos/keys/KeyCodes.h"

namespace nimbarrow {

namespace {

class Registered final : public HotKeys::Registration {
public:
    Registered(quint32 place, quint32 modifiers, quint32 number, std::function<void()> pressed)
        : m_hotKey(place, modifiers, number, std::move(pressed))
    {
    }

private:
    CarbonHotKey m_hotKey;
};

/// For a key that has no place on this system's keyboards.
class Unregistered final : public HotKeys::Registration { };

} // namespace

std::unique_ptr<HotKeys::Registration> MacHotKeys::registerKey(
    Key key, KeyModifiers modifiers, std::function<void()> pressed)
{
    const auto place = keycodes::placeOf(key);
    if (!place)
        return std::make_unique<Unregistered>();
    return std::make_unique<Registered>(
        *place, keycodes::hotKeyModifiers(modifiers), ++m_lastNumber, std::move(pressed));
}

} // namespace nimbarrow
