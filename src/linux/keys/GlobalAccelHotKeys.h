#pragma once

#include "platform/HotKeys.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>

namespace nimbarrow {

/// The hot key as an action among KDE's shortcuts, where people see it and may give it other keys: those
/// count then, not the ones that are registered here.
class GlobalAccelHotKeys final : public HotKeys {
public:
    /// `description` is what the action is called in the system's settings.
    GlobalAccelHotKeys(QDBusConnection bus, QString description);
    ~GlobalAccelHotKeys() override;

    /// The program has one hot key: a second registration beside the first would be the same action.
    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override;

private:
    class Action;

    QDBusConnection m_bus;
    QString m_description;
};

} // namespace nimbarrow
