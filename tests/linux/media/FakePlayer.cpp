#include "linux/media/FakePlayer.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

const auto path = u"/org/mpris/MediaPlayer2"_s;
const auto propertiesInterface = u"org.freedesktop.DBus.Properties"_s;
const auto playerInterface = u"org.mpris.MediaPlayer2.Player"_s;

} // namespace

FakePlayer::FakePlayer(const QString& busAddress, const QString& name)
    : m_bus(QDBusConnection::connectToBus(busAddress, name))
    , m_properties { { u"PlaybackStatus"_s, u"Stopped"_s }, { u"Position"_s, qint64(0) } }
{
    m_bus.registerVirtualObject(path, this);
    m_bus.registerService(u"org.mpris.MediaPlayer2."_s + name);
}

// Without a word, as in a crash.
FakePlayer::~FakePlayer()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

void FakePlayer::change(const QVariantMap& properties)
{
    m_properties.insert(properties);
    announce(properties, {});
}

void FakePlayer::invalidate(const QVariantMap& properties)
{
    m_properties.insert(properties);
    announce({}, properties.keys());
}

QString FakePlayer::introspect(const QString& path) const
{
    Q_UNUSED(path)
    return {};
}

bool FakePlayer::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto arguments = message.arguments();
    if (message.interface() == propertiesInterface && message.member() == "GetAll"_L1)
        return connection.send(message.createReply(QVariant(m_properties)));
    const auto property = arguments.value(1).toString();
    if (message.interface() == propertiesInterface && message.member() == "Get"_L1)
        return reply(message, { QVariant::fromValue(QDBusVariant(m_properties.value(property))) },
            m_delays.value(property));
    if (message.interface() == propertiesInterface && message.member() == "Set"_L1) {
        if (m_refusesVolume)
            return connection.send(message.createErrorReply(QDBusError::PropertyReadOnly, u"fixed"_s));
        const auto value = arguments.value(2).value<QDBusVariant>().variant();
        m_requests += property + u' ' + value.toString();
        reply(message, {}, m_delays.value(property));
        change({ { property, value } });
        return true;
    }
    if (message.interface() != playerInterface)
        return false;
    auto request = message.member();
    for (const auto& argument : arguments) {
        const bool isPath = argument.metaType() == QMetaType::fromType<QDBusObjectPath>();
        request += u' ' + (isPath ? argument.value<QDBusObjectPath>().path() : argument.toString());
    }
    m_requests += request;
    return connection.send(message.createReply());
}

bool FakePlayer::reply(const QDBusMessage& message, const QVariantList& arguments, int delay) const
{
    if (delay == 0)
        return m_bus.send(message.createReply(arguments));
    message.setDelayedReply(true);
    QTimer::singleShot(
        delay, this, [this, message, arguments] { m_bus.send(message.createReply(arguments)); });
    return true;
}

void FakePlayer::announce(const QVariantMap& changed, const QStringList& invalidated)
{
    auto signal = QDBusMessage::createSignal(path, propertiesInterface, u"PropertiesChanged"_s);
    signal << playerInterface << changed << invalidated;
    m_bus.send(signal);
}

} // namespace nimbarrow
