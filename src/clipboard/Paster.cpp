#include "clipboard/Paster.h"

#include "clipboard/ClipboardMonitor.h"
#include "platform/AccessibilityTrust.h"
#include "platform/Keystrokes.h"
#include "preferences/Settings.h"

#include <utility>

namespace nimbarrow {

Paster::Paster(ClipboardMonitor& monitor, const Settings& settings, AccessibilityTrust& trust,
    Keystrokes& keystrokes, QObject* parent)
    : QObject(parent)
    , deliverPaste([&keystrokes] { keystrokes.postPaste(); })
    , m_monitor(monitor)
    , m_settings(settings)
    , m_trust(trust)
{
}

bool Paster::paste(const ClipboardItem& item, bool fromKeyboard)
{
    m_monitor.write(item);
    if (!fromKeyboard && !m_settings.pasteOnClick())
        return false;
    if (m_trust.isTrusted()) {
        deliverPaste();
        return true;
    }
    // Once a run: who said no is not asked at every click.
    if (!std::exchange(m_trustPrompted, true))
        m_trust.prompt();
    Q_EMIT leftToUser();
    return false;
}

} // namespace nimbarrow
