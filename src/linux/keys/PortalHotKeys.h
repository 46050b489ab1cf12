#pragma once

#include "platform/HotKeys.h"

#include <QDBusConnection>
#include <QString>

namespace nimbarrow {

inline const QString globalShortcutsPortal = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

/// The hot key as the desktop's portal has it: the desktop asks the user once, who may choose other keys then
/// and later.
class PortalHotKeys final : public HotKeys {
public:
    /// `description` is what the desktop calls the hot key when it asks. `bound` runs on the main loop each
    /// time the portal has answered, with whether there is a hot key now.
    PortalHotKeys(QDBusConnection bus, QString description, std::function<void(bool isBound)> bound);

    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override;

private:
    class Session;

    QDBusConnection m_bus;
    QString m_description;
    std::function<void(bool)> m_bound;
};

} // namespace nimbarrow
