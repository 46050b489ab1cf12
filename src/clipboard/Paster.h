#pragma once

#include "clipboard/ClipboardItem.h"

#include <QObject>
#include <QUuid>
#include <qqmlintegration.h>

#include <functional>

namespace nimbarrow {

class AccessibilityTrust;
class ClipboardMonitor;
class ClipboardStore;
class Keystrokes;
class Settings;

/// Puts an entry back on the pasteboard and, where the user allows it, types the paste keystroke.
class Paster final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    /// All references outlive the paster.
    Paster(const ClipboardStore& store, ClipboardMonitor& monitor, const Settings& settings,
        AccessibilityTrust& trust, Keystrokes& keystrokes, QObject* parent = nullptr);

    /// True when a paste keystroke was delivered; the entry is on the pasteboard in any case.
    bool paste(const ClipboardItem& item, bool fromKeyboard);

    /// A click on an entry: as above for the entry of this identifier, false when it is gone.
    Q_INVOKABLE bool pasteClicked(const QUuid& id);

    /// How a keystroke is delivered; types it at once until somebody replaces this.
    std::function<void()> deliverPaste;

private:
    const ClipboardStore& m_store;
    ClipboardMonitor& m_monitor;
    const Settings& m_settings;
    AccessibilityTrust& m_trust;
    bool m_trustPrompted = false;
};

} // namespace nimbarrow
