#pragma once

#include <QObject>

#include <functional>

namespace nimbarrow {

class AccessibilityTrust;
class ClipboardMonitor;
class Keystrokes;
class Settings;
struct ClipboardItem;

/// Puts an entry back on the pasteboard and, where the user allows it, types the paste keystroke.
class Paster final : public QObject {
    Q_OBJECT

public:
    /// All references outlive the paster.
    Paster(ClipboardMonitor& monitor, const Settings& settings, AccessibilityTrust& trust,
        Keystrokes& keystrokes, QObject* parent = nullptr);

    /// True when a paste keystroke was delivered; the entry is on the pasteboard in any case.
    bool paste(const ClipboardItem& item, bool fromKeyboard);

    /// How a keystroke is delivered; types it at once until somebody replaces this.
    std::function<void()> deliverPaste;

Q_SIGNALS:
    /// The system does not let the program paste what was to be pasted: it is left to the user.
    void leftToUser();

private:
    ClipboardMonitor& m_monitor;
    const Settings& m_settings;
    AccessibilityTrust& m_trust;
    bool m_trustPrompted = false;
};

} // namespace nimbarrow
