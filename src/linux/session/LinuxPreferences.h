#pragma once

#include "platform/DesktopPreferences.h"

#include <QDBusConnection>
#include <QDBusVariant>

#include <optional>

namespace nimbarrow {

/// The languages of the environment, and the motion that the desktop's settings portal tells of.
class LinuxPreferences final : public DesktopPreferences {
    Q_OBJECT

public:
    /// Asks `bus` in the background; without one the user is taken to like motion.
    explicit LinuxPreferences(std::optional<QDBusConnection> bus);

    [[nodiscard]] QStringList preferredLanguages() const override;
    [[nodiscard]] bool reduceMotion() const override { return m_reduceMotion; }

private Q_SLOTS:
    void accept(const QString& space, const QString& key, const QDBusVariant& wrapped);

private:
    void ask(const QDBusConnection& bus, const QString& space, const QString& key);

    /// The answers of the desktops that have one; the first decides alone where it is given.
    std::optional<bool> m_reducedMotion;
    bool m_animationsOff = false;
    bool m_animationsInstant = false;
    bool m_reduceMotion = false;
};

} // namespace nimbarrow
