#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QHash>
#include <QStringList>
#include <QVariantMap>

namespace nimbarrow {

/// A player on the bus that says whatever a test wants it to say, and keeps what it was asked to do.
class FakePlayer final : public QDBusVirtualObject {
public:
    FakePlayer(const QString& busAddress, const QString& name);
    ~FakePlayer() override;
    Q_DISABLE_COPY_MOVE(FakePlayer)

    /// Says the changed properties in one signal.
    void change(const QVariantMap& properties);
    /// Names the changed properties without their values.
    void invalidate(const QVariantMap& properties);
    /// Says nothing of what has changed.
    void changeSilently(const QVariantMap& properties) { m_properties.insert(properties); }
    void setPosition(qint64 microseconds) { m_properties.insert(QStringLiteral("Position"), microseconds); }
    void refuseVolume() { m_refusesVolume = true; }
    /// How long it takes for each answer about this property, or to a change of it, in milliseconds.
    void hesitate(const QString& property, int delay) { m_delays.insert(property, delay); }
    /// What was asked, such as "Seek 5000000".
    [[nodiscard]] QStringList takeRequests() { return std::exchange(m_requests, {}); }

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    bool reply(const QDBusMessage& message, const QVariantList& arguments, int delay = 0) const;
    void announce(const QVariantMap& changed, const QStringList& invalidated);

    QDBusConnection m_bus;
    QVariantMap m_properties;
    QStringList m_requests;
    QHash<QString, int> m_delays;
    bool m_refusesVolume = false;
};

} // namespace nimbarrow
