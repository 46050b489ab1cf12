#include "macos/keys/CarbonHotKey.h"

namespace nimbarrow {

CarbonHotKey::CarbonHotKey(quint32 place, quint32 modifiers, quint32 signature, quint32 number)
{
    const EventHotKeyID identifier { signature, number };
    constexpr OptionBits noOptions = 0;
    if (RegisterEventHotKey(place, modifiers, identifier, GetApplicationEventTarget(), noOptions, &m_reference)
        != noErr)
        m_reference = nullptr;
}

CarbonHotKey::~CarbonHotKey()
{
    if (m_reference)
        UnregisterEventHotKey(m_reference);
}

CarbonHotKeyHandler::CarbonHotKeyHandler(Pressed pressed)
    : m_pressed(std::move(pressed))
{
    constexpr EventTypeSpec pressedKeys { kEventClassKeyboard, kEventHotKeyPressed };
    if (InstallEventHandler(GetApplicationEventTarget(), &CarbonHotKeyHandler::handle, 1, &pressedKeys, this,
            &m_reference)
        != noErr)
        m_reference = nullptr;
}

CarbonHotKeyHandler::~CarbonHotKeyHandler()
{
    if (m_reference)
        RemoveEventHandler(m_reference);
}

OSStatus CarbonHotKeyHandler::handle(EventHandlerCallRef /*next*/, EventRef event, void* handler)
{
    if (!event || !handler)
        return noErr;
    EventHotKeyID identifier {};
    if (GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof identifier, nullptr,
            &identifier)
        != noErr)
        identifier = {};
    // The key may end this handler.
    const auto pressed = static_cast<CarbonHotKeyHandler*>(handler)->m_pressed;
    pressed(identifier.signature, identifier.id);
    return noErr;
}

} // namespace nimbarrow
