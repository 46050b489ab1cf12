#pragma once

#include "platform/HotKeys.h"

#include <QDBusConnection>
#include <QString>

namespace nimbarrow {

inline const QString globalShortcutsPortal = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

class UserDefaults;

/// The hot key as the desktop's portal has it: the desktop asks the user once, who may choose other keys then
/// and later.
class PortalHotKeys final : public HotKeys {
public:
    /// `defaults`, which live longer, remember who has refused it: they are asked again when they switch the
    /// hot key on, not at each start. `description` is what the desktop calls the hot key when it asks.
    /// `bound` runs on the main loop each time it is known whether there is a hot key.
    PortalHotKeys(QDBusConnection bus, UserDefaults& defaults, QString description,
        std::function<void(bool isBound)> bound);

    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override;

private:
    class Session;

    QDBusConnection m_bus;
    UserDefaults& m_defaults;
    QString m_description;
    std::function<void(bool)> m_bound;
};

} // namespace nimbarrow
