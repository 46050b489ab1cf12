#include "linux/media/MprisPlayers.h"

#include "linux/media/PlayerChoice.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

using Playback = PlayerReading::Playback;

QDBusMessage askBus(const QString& method, const QVariantList& arguments = {})
{
    auto message = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    message.setArguments(arguments);
    return message;
}

} // namespace

MprisPlayers::MprisPlayers(const QDBusConnection& bus)
    : m_bus(bus)
    // The bus sends us only the names below this one; a session's every connection would wake us otherwise.
    , m_names(u"org.mpris.MediaPlayer2*"_s, bus, QDBusServiceWatcher::WatchForOwnerChange)
{
}

void MprisPlayers::start()
{
    connect(&m_names, &QDBusServiceWatcher::serviceOwnerChanged, this, &MprisPlayers::ownerChanged);
    list();
}

bool MprisPlayers::areSettled() const
{
    return m_asked == 0 && std::all_of(m_players.cbegin(), m_players.cend(), [](const auto& entry) {
        return entry.second.player->isSettled();
    });
}

MprisPlayer* MprisPlayers::choose()
{
    QList<PlayerCandidate> candidates;
    for (const auto& [service, entry] : m_players) {
        const auto& reading = entry.player->reading();
        if (reading.isNamed())
            candidates.append({ service, reading.playback, entry.started, reading.title });
    }
    m_chosen = choosePlayer(candidates, m_chosen);
    const auto found = m_players.find(m_chosen);
    return found == m_players.end() ? nullptr : found->second.player.get();
}

void MprisPlayers::ownerChanged(const QString& service, const QString& before, const QString& now)
{
    Q_UNUSED(before)
    if (!isPlayerName(service))
        return;
    m_players.erase(service);
    if (!now.isEmpty())
        add(service, now);
    Q_EMIT changed();
}

void MprisPlayers::add(const QString& service, const QString& owner)
{
    auto& entry = m_players[service];
    if (entry.player && entry.player->owner() == owner)
        return;
    entry = { std::make_unique<MprisPlayer>(m_bus, service, owner) };
    connect(entry.player.get(), &MprisPlayer::changed, this, [this, service] {
        noteStart(service);
        Q_EMIT changed();
    });
    connect(entry.player.get(), &MprisPlayer::seeked, this, [this, service] {
        if (service == m_chosen)
            Q_EMIT seeked();
    });
}

void MprisPlayers::noteStart(const QString& service)
{
    auto& entry = m_players.at(service);
    const bool plays = entry.player->reading().playback == Playback::Playing;
    if (plays && !entry.plays)
        entry.started = ++m_starts;
    entry.plays = plays;
}

void MprisPlayers::list()
{
    const auto done = [this] {
        --m_asked;
        Q_EMIT changed();
    };
    ++m_asked;
    auto* const names = new QDBusPendingCallWatcher(m_bus.asyncCall(askBus(u"ListNames"_s)), this);
    connect(names, &QDBusPendingCallWatcher::finished, this, [this, names, done] {
        names->deleteLater();
        for (const auto& service : names->reply().arguments().value(0).toStringList()) {
            if (!isPlayerName(service))
                continue;
            ++m_asked;
            const auto question = askBus(u"GetNameOwner"_s, { service });
            auto* const owner = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
            connect(owner, &QDBusPendingCallWatcher::finished, this, [this, owner, service, done] {
                owner->deleteLater();
                const auto reply = owner->reply();
                if (reply.type() == QDBusMessage::ReplyMessage)
                    add(service, reply.arguments().value(0).toString());
                done();
            });
        }
        done();
    });
}

} // namespace nimbarrow
