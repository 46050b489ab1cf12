#include "app/HotKey.h"

namespace nimbarrow {

HotKey::HotKey(HotKeys& hotKeys)
    : m_hotKeys(hotKeys)
{
}

void HotKey::registerKey()
{
    if (m_registration)
        return;
    m_registration = m_hotKeys.registerKey(Key::V, KeyModifier::Command | KeyModifier::Shift, [this] {
        if (onPressed)
            onPressed();
    });
}

void HotKey::unregister()
{
    m_registration.reset();
}

} // namespace nimbarrow
