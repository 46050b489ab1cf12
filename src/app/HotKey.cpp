#include "app/HotKey.h"

namespace nimbarrow {

namespace {

constexpr quint32 fourCharacterCode(char a, char b, char c, char d)
{
    return static_cast<quint32>(a) << 24U | static_cast<quint32>(b) << 16U | static_cast<quint32>(c) << 8U
        | static_cast<quint32>(d);
}

constexpr HotKeyId identifier { fourCharacterCode('N', 'B', 'R', 'W'), 1 };

} // namespace

HotKey::HotKey(HotKeys& hotKeys)
    : m_hotKeys(hotKeys)
{
}

void HotKey::registerKey()
{
    if (m_hotKey)
        return;
    installHandlerIfNeeded();
    m_hotKey = m_hotKeys.registerKey(Key::V, KeyModifier::Command | KeyModifier::Shift, identifier);
}

void HotKey::unregister()
{
    m_hotKey.reset();
}

void HotKey::installHandlerIfNeeded()
{
    if (m_handler)
        return;
    m_handler = m_hotKeys.installHandler([this](HotKeyId id) {
        if (id == identifier && onPressed)
            onPressed();
    });
}

} // namespace nimbarrow
