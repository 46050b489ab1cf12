#include "linux/media/MprisPlayers.h"

#include "linux/session/BusCalls.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

using Playback = PlayerReading::Playback;

// Longer than any player takes from one track to the next.
constexpr auto longestPause = 500ms;

} // namespace

MprisPlayers::MprisPlayers(const QDBusConnection& bus, Scheduler& scheduler)
    : m_bus(bus)
    , m_scheduler(scheduler)
    // The bus sends us only the names below this one; a session's every connection would wake us otherwise.
    , m_names(u"org.mpris.MediaPlayer2*"_s, bus, QDBusServiceWatcher::WatchForOwnerChange)
{
}

void MprisPlayers::start()
{
    connect(&m_names, &QDBusServiceWatcher::serviceOwnerChanged, this, &MprisPlayers::ownerChanged);
    list();
}

bool MprisPlayers::haveAnswered() const
{
    return m_asked == 0 && std::all_of(m_players.cbegin(), m_players.cend(), [](const auto& entry) {
        return entry.second.player->hasAnswered();
    });
}

MprisPlayer* MprisPlayers::choose()
{
    QList<PlayerCandidate> candidates;
    for (const auto& [service, entry] : m_players) {
        if (entry.isActive || entry.pause.isSet())
            candidates.append(entry.candidate);
    }
    m_chosen = choosePlayer(candidates, m_chosen);
    const auto found = m_players.find(m_chosen);
    return found == m_players.end() ? nullptr : found->second.player.get();
}

bool MprisPlayers::isChosenPausing() const
{
    const auto found = m_players.find(m_chosen);
    return found != m_players.end() && found->second.pause.isSet();
}

void MprisPlayers::ownerChanged(const QString& service, const QString& before, const QString& now)
{
    Q_UNUSED(before)
    if (!isPlayerName(service))
        return;
    m_players.erase(service);
    if (!now.isEmpty())
        add(service, now);
    Q_EMIT listChanged();
}

void MprisPlayers::add(const QString& service, const QString& owner)
{
    auto& entry = m_players[service];
    if (entry.player && entry.player->owner() == owner)
        return;
    entry = {};
    entry.player = std::make_unique<MprisPlayer>(m_bus, owner);
    entry.candidate.service = service;
    auto* const player = entry.player.get();
    connect(player, &MprisPlayer::changed, this, [this, service] { update(service); });
    const auto tell = [this, player] { Q_EMIT mustTell(player); };
    connect(player, &MprisPlayer::seeked, this, tell);
    connect(player, &MprisPlayer::commandEnded, this, tell);
}

void MprisPlayers::update(const QString& service)
{
    auto& entry = m_players.at(service);
    const auto& reading = entry.player->reading();
    const bool wasActive = std::exchange(entry.isActive, reading.isActive());
    if (entry.isActive) {
        entry.pause.cancel();
        auto& candidate = entry.candidate;
        if (reading.playback == Playback::Playing && (!wasActive || candidate.playback != Playback::Playing))
            candidate.started = ++m_starts;
        candidate.playback = reading.playback;
        candidate.title = reading.state.title;
    } else if (wasActive) {
        entry.pause = m_scheduler.after(longestPause, [this, service] {
            auto& stopped = m_players.at(service);
            stopped.pause.cancel();
            Q_EMIT changed(stopped.player.get());
        });
    }
    Q_EMIT changed(entry.player.get());
}

void MprisPlayers::list()
{
    const auto done = [this] {
        --m_asked;
        Q_EMIT listChanged();
    };
    ++m_asked;
    callBus(m_bus, questionToBus(u"ListNames"_s), this, [this, done](const QDBusMessage& names) {
        for (const auto& service : names.arguments().value(0).toStringList()) {
            if (!isPlayerName(service))
                continue;
            ++m_asked;
            const auto accept = [this, service, done](const QDBusMessage& owner) {
                if (owner.type() == QDBusMessage::ReplyMessage)
                    add(service, owner.arguments().value(0).toString());
                done();
            };
            callBus(m_bus, questionToBus(u"GetNameOwner"_s) << service, this, accept);
        }
        done();
    });
}

} // namespace nimbarrow
