#include "linux/media/MprisPlayer.h"

#include "linux/media/PlayerProcess.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QXmlStreamReader>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr int patience = 2000; // ms
constexpr int positionPatience = 400; // ms

const auto path = u"/org/mpris/MediaPlayer2"_s;
const auto playerInterface = u"org.mpris.MediaPlayer2.Player"_s;
const auto propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

qint64 microseconds(double seconds)
{
    return qRound64(seconds * 1e6);
}

/// Whether a description of the player's object says that its volume is for reading only.
bool saysVolumeIsFixed(const QString& description)
{
    QXmlStreamReader xml(description);
    bool inPlayer = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attributes = xml.attributes();
        if (xml.name() == "interface"_L1)
            inPlayer = attributes.value("name"_L1) == playerInterface;
        else if (inPlayer && xml.name() == "property"_L1 && attributes.value("name"_L1) == "Volume"_L1)
            return attributes.value("access"_L1) == "read"_L1;
    }
    return false;
}

} // namespace

MprisPlayer::MprisPlayer(const QDBusConnection& bus, QString service, QString owner)
    : m_bus(bus)
    , m_service(std::move(service))
    , m_owner(std::move(owner))
{
    m_bus.connect(m_owner, path, propertiesInterface, u"PropertiesChanged"_s, this,
        SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    m_bus.connect(m_owner, path, playerInterface, u"Seeked"_s, this, SLOT(positionJumped()));
    readProcess();
    readVolumeAccess();
    readAll();
}

void MprisPlayer::position(const std::function<void(std::optional<double>)>& done)
{
    ask(call(propertiesInterface, u"Get"_s, { playerInterface, u"Position"_s }), positionPatience,
        [done](const QDBusMessage& reply) {
            if (reply.type() == QDBusMessage::ReplyMessage)
                done(readPosition(reply.arguments().value(0)));
            else
                done({});
        });
}

void MprisPlayer::carryOut(const MediaCommand& command)
{
    using Verb = MediaCommand::Verb;
    const auto nothing = [](const QDBusMessage&) {};
    switch (command.verb) {
    case Verb::Toggle: ask(call(playerInterface, u"PlayPause"_s), patience, nothing); break;
    case Verb::Next: ask(call(playerInterface, u"Next"_s), patience, nothing); break;
    case Verb::Previous: ask(call(playerInterface, u"Previous"_s), patience, nothing); break;
    case Verb::Seek: seek(command.value); break;
    case Verb::Volume: setVolume(command.value); break;
    }
}

void MprisPlayer::propertiesChanged(
    const QString& interface, const QVariantMap& changed, const QStringList& invalidated)
{
    if (interface != playerInterface)
        return;
    // Names without values: some players leave the reading to us.
    if (!invalidated.isEmpty())
        readAll();
    if (changed.isEmpty())
        return;
    auto properties = m_properties;
    for (auto entry = changed.cbegin(); entry != changed.cend(); ++entry)
        properties.insert(entry.key(), entry.value());
    take(properties);
}

void MprisPlayer::positionJumped()
{
    Q_EMIT seeked();
}

void MprisPlayer::ask(const QDBusMessage& question, int patience, const Answer& answer)
{
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question, patience), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answer] {
        watcher->deleteLater();
        answer(watcher->reply());
    });
}

QDBusMessage MprisPlayer::call(
    const QString& interface, const QString& method, const QVariantList& arguments) const
{
    auto message = QDBusMessage::createMethodCall(m_owner, path, interface, method);
    message.setArguments(arguments);
    return message;
}

void MprisPlayer::readAll()
{
    ask(call(propertiesInterface, u"GetAll"_s, { playerInterface }), patience,
        [this](const QDBusMessage& reply) {
            m_settled = true;
            if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "a{sv}"_L1)
                take(qdbus_cast<QVariantMap>(reply.arguments().value(0)));
            else
                Q_EMIT changed();
        });
}

void MprisPlayer::readProcess()
{
    auto question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
        u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
    question << m_owner;
    ask(question, patience, [this](const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage)
            return;
        m_pid = playerProcess(reply.arguments().value(0).toInt());
        Q_EMIT changed();
    });
}

void MprisPlayer::readVolumeAccess()
{
    ask(call(u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s), patience,
        [this](const QDBusMessage& reply) {
            if (reply.type() != QDBusMessage::ReplyMessage
                || !saysVolumeIsFixed(reply.arguments().value(0).toString()))
                return;
            m_volumeIsFixed = true;
            take(m_properties);
        });
}

void MprisPlayer::take(const QVariantMap& properties)
{
    m_properties = properties;
    m_reading = readPlayer(m_properties);
    if (m_volumeIsFixed)
        m_reading.volume.reset();
    // Also without a visible difference: the position may be another one.
    Q_EMIT changed();
}

void MprisPlayer::seek(double seconds)
{
    if (!m_reading.canSeek)
        return;
    // Beyond the end a player goes on to the next track.
    const auto target = m_reading.duration > 0 ? std::min(seconds, m_reading.duration) : seconds;
    if (m_reading.trackPath.isEmpty())
        return seekBy(target);
    const auto track = QVariant::fromValue(QDBusObjectPath(m_reading.trackPath));
    ask(call(playerInterface, u"SetPosition"_s, { track, microseconds(target) }), patience,
        [this, target](const QDBusMessage& reply) {
            if (reply.type() == QDBusMessage::ErrorMessage)
                seekBy(target);
            else
                Q_EMIT changed();
        });
}

void MprisPlayer::seekBy(double target)
{
    position([this, target](std::optional<double> now) {
        if (!now)
            return;
        ask(call(playerInterface, u"Seek"_s, { microseconds(target - *now) }), patience,
            [this](const QDBusMessage&) { Q_EMIT changed(); });
    });
}

void MprisPlayer::setVolume(double percent)
{
    if (!m_reading.volume)
        return;
    // A slider moves faster than some players answer.
    if (m_settingVolume) {
        m_nextVolume = percent;
        return;
    }
    m_settingVolume = true;
    const auto value = QVariant::fromValue(QDBusVariant(percent / 100));
    ask(call(propertiesInterface, u"Set"_s, { playerInterface, u"Volume"_s, value }), patience,
        [this](const QDBusMessage& reply) {
            m_settingVolume = false;
            const auto next = std::exchange(m_nextVolume, {});
            if (reply.type() == QDBusMessage::ErrorMessage) {
                m_volumeIsFixed = true;
                take(m_properties);
            } else if (next) {
                setVolume(*next);
            }
        });
}

} // namespace nimbarrow
