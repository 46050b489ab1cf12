#include "linux/media/MprisPlayer.h"

#include "linux/media/PlayerProcess.h"
#include "linux/session/BusCalls.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
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

/// Whether an error is the player's own word, and not that of a bus whose patience has ended.
bool isRefusal(const QDBusMessage& reply)
{
    const QDBusError error(reply);
    switch (error.type()) {
    case QDBusError::NoError:
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
    case QDBusError::ServiceUnknown: return false;
    default: return true;
    }
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

MprisPlayer::MprisPlayer(const QDBusConnection& bus, QString owner)
    : m_bus(bus)
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
    const auto order = [this](const QString& method) {
        ask(call(playerInterface, method), patience, [this](const QDBusMessage&) { endCommand(); });
    };
    switch (command.verb) {
    case Verb::Toggle: order(u"PlayPause"_s); break;
    case Verb::Next: order(u"Next"_s); break;
    case Verb::Previous: order(u"Previous"_s); break;
    case Verb::Seek: seek(command.value); break;
    case Verb::Volume: setVolume(command.value); break;
    case Verb::Refresh: readAll(); break;
    }
}

void MprisPlayer::propertiesChanged(
    const QString& interface, const QVariantMap& changed, const QStringList& invalidated)
{
    if (interface != playerInterface)
        return;
    const auto before = m_reading.playback;
    if (!changed.isEmpty()) {
        auto properties = m_properties;
        properties.insert(changed);
        setProperties(properties);
    }
    // Names without values: some players leave the reading to us. And with its status a player changes more
    // than it says, such as the length that it only now knows.
    if (!invalidated.isEmpty() || m_reading.playback != before)
        readAll();
}

void MprisPlayer::positionJumped()
{
    Q_EMIT seeked();
}

void MprisPlayer::ask(const QDBusMessage& question, int patience, const Answer& answer)
{
    callBus(m_bus, question, this, answer, patience);
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
    // However often it is asked for, one question is under way.
    m_mustReadAgain = std::exchange(m_isReading, true);
    if (m_mustReadAgain)
        return;
    ask(call(propertiesInterface, u"GetAll"_s, { playerInterface }), patience,
        [this](const QDBusMessage& reply) {
            m_hasAnswered = true;
            m_isReading = false;
            const bool isLast = !m_mustReadAgain;
            if (m_mustReadAgain)
                readAll();
            if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "a{sv}"_L1)
                setProperties(qdbus_cast<QVariantMap>(reply.arguments().value(0)));
            else
                Q_EMIT changed();
            if (isLast && std::exchange(m_hasCommandEnded, false))
                Q_EMIT commandEnded();
        });
}

void MprisPlayer::readProcess()
{
    const auto question = questionToBus(u"GetConnectionUnixProcessID"_s) << m_owner;
    ask(question, patience, [this](const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage)
            return;
        m_pid = playerProcess(reply.arguments().value(0).toInt());
        setProperties(m_properties);
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
            setProperties(m_properties);
        });
}

void MprisPlayer::setProperties(const QVariantMap& properties)
{
    m_properties = properties;
    m_reading = readPlayer(m_properties);
    if (m_volumeIsFixed)
        m_reading.state.volume.reset();
    if (m_reading.state.pid == 0)
        m_reading.state.pid = m_pid;
    // Also without a visible difference: the position may be another one.
    Q_EMIT changed();
}

void MprisPlayer::endCommand()
{
    m_hasCommandEnded = true;
    readAll();
}

void MprisPlayer::seek(double seconds)
{
    const auto& state = m_reading.state;
    if (!state.canSeek)
        return endCommand();
    // Beyond the end a player goes on to the next track.
    const auto target = state.duration > 0 ? std::min(seconds, state.duration) : seconds;
    if (m_reading.trackPath.isEmpty())
        return seekBy(target);
    const auto track = QVariant::fromValue(QDBusObjectPath(m_reading.trackPath));
    ask(call(playerInterface, u"SetPosition"_s, { track, microseconds(target) }), patience,
        [this, target](const QDBusMessage& reply) {
            if (isRefusal(reply))
                seekBy(target);
            else
                endCommand();
        });
}

void MprisPlayer::seekBy(double target)
{
    position([this, target](std::optional<double> now) {
        if (!now)
            return endCommand();
        ask(call(playerInterface, u"Seek"_s, { microseconds(target - *now) }), patience,
            [this](const QDBusMessage&) { endCommand(); });
    });
}

void MprisPlayer::setVolume(double percent)
{
    if (!m_reading.state.volume)
        return endCommand();
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
            m_volumeIsFixed = m_volumeIsFixed || isRefusal(reply);
            if (next && !m_volumeIsFixed)
                return setVolume(*next);
            endCommand();
        });
}

} // namespace nimbarrow
