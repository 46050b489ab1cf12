#include "macos/keys/CarbonHotKey.h"

namespace nimbarrow {

namespace {

/// "NBRW": whose hot key it is.
constexpr quint32 signature = 0x4E425257;

} // namespace

CarbonHotKey::CarbonHotKey(quint32 place, quint32 modifiers, quint32 number, std::function<void()> pressed)
    : m_number(number)
    , m_pressed(std::move(pressed))
{
    constexpr EventTypeSpec pressedKeys { kEventClassKeyboard, kEventHotKeyPressed };
    auto* const target = GetApplicationEventTarget();
    if (InstallEventHandler(target, &CarbonHotKey::handle, 1, &pressedKeys, this, &m_handler) != noErr) {
        m_handler = nullptr;
        return;
    }
    const EventHotKeyID identifier { signature, number };
    constexpr OptionBits noOptions = 0;
    if (RegisterEventHotKey(place, modifiers, identifier, target, noOptions, &m_reference) != noErr)
        m_reference = nullptr;
}

CarbonHotKey::~CarbonHotKey()
{
    // The handler goes last: no key may arrive without one.
    if (m_reference)
        UnregisterEventHotKey(m_reference);
    if (m_handler)
        RemoveEventHandler(m_handler);
}

OSStatus CarbonHotKey::handle(EventHandlerCallRef /*next*/, EventRef event, void* hotKey)
{
    if (!event || !hotKey)
        return noErr;
    // Zeros that no key has, for an event that does not tell.
    EventHotKeyID identifier {};
    const auto status = GetEventParameter(
        event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof identifier, nullptr, &identifier);
    const auto& self = *static_cast<const CarbonHotKey*>(hotKey);
    // Every hot key of the program has a handler of its own.
    if (status != noErr || identifier.signature != signature || identifier.id != self.m_number)
        return eventNotHandledErr;
    const auto pressed = self.m_pressed;
    pressed();
    return noErr;
}

} // namespace nimbarrow
