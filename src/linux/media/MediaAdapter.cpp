#include "linux/media/MediaAdapter.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

// Players tell of one event in several messages.
constexpr auto debounce = 50ms;
// Long enough for a file: then the state comes with its artwork, and a notice of it has the cover.
constexpr auto longestArtworkWait = 250ms;
// Some players count whole seconds only.
constexpr double tolerance = 1.0; // s

} // namespace

MediaAdapter::MediaAdapter(const QDBusConnection& bus, const Clock& clock, Scheduler& scheduler,
    WorkQueues& queues, std::optional<ArtworkDownload> download, Send send)
    : m_clock(clock)
    , m_scheduler(scheduler)
    , m_players(bus, scheduler)
    , m_fetcher(queues, std::move(download))
    , m_send(std::move(send))
{
    connect(&m_players, &MprisPlayers::listChanged, this, &MediaAdapter::scheduleUpdate);
    connect(&m_players, &MprisPlayers::changed, this, &MediaAdapter::playerChanged);
    connect(&m_players, &MprisPlayers::mustTell, this, [this](const MprisPlayer* player) {
        m_mustReport = m_mustReport || player == m_player;
        playerChanged(player);
    });
}

void MediaAdapter::carryOut(const MediaCommand& command)
{
    if (m_player)
        m_player->carryOut(command);
}

void MediaAdapter::playerChanged(const MprisPlayer* player)
{
    m_isOutdated = m_isOutdated || player == m_player;
    scheduleUpdate();
}

void MediaAdapter::scheduleUpdate()
{
    if (!m_debounce.isSet())
        m_debounce = m_scheduler.after(debounce, [this] {
            m_debounce.cancel();
            update();
        });
}

void MediaAdapter::update()
{
    // At the start the first answer is not yet the right one.
    if (!m_players.haveAnswered() && !m_last && !m_isIdleReported)
        return;
    auto* const chosen = m_players.choose();
    if (chosen == nullptr)
        return reportIdle();
    if (chosen != m_player) {
        m_player = chosen;
        m_isOutdated = true;
        m_mustReport = false;
        m_round.reset();
    }
    // What it says between two tracks is of no track. And a round that has begun comes to its end, however
    // much the player has to say meanwhile; the next one begins then.
    if (m_isOutdated && !m_round && !m_players.isChosenPausing())
        begin();
}

void MediaAdapter::begin()
{
    const auto number = ++m_rounds;
    m_isOutdated = false;
    m_round = Round { number, m_player->reading(), {}, false };
    m_artworkWait = m_scheduler.after(longestArtworkWait, [this] {
        m_artworkWait.cancel();
        finishIfComplete();
    });
    const auto isCurrent = [this, number] { return m_round && m_round->number == number; };
    m_player->position([this, isCurrent](std::optional<double> elapsed) {
        if (isCurrent())
            positionRead(elapsed);
    });
    const auto url = m_round->reading.artworkUrl;
    m_fetcher.fetch(url, [this, url](const Artwork& artwork) {
        if (m_round && m_round->reading.artworkUrl == url) {
            m_round->artwork = artwork;
            finishIfComplete();
        } else if (m_last && m_last->artworkUrl == url
            && m_last->state.artworkID.value_or(QString()) != artwork.id) {
            // It came later than its track.
            m_isOutdated = true;
            scheduleUpdate();
        }
    });
}

void MediaAdapter::positionRead(std::optional<double> elapsed)
{
    auto& state = m_round->reading.state;
    const auto now = m_clock.wallTime();
    state.timestamp = now;
    // A player that does not know where it is has just been asked to pause, as a rule.
    const bool goesOn = m_last && m_last->state.isSameTrack(state);
    const auto best = elapsed ? *elapsed : goesOn ? m_last->state.elapsedAt(now) : 0.0;
    state.elapsed = state.duration > 0 ? std::min(best, state.duration) : best;
    m_round->hasPosition = true;
    finishIfComplete();
}

void MediaAdapter::finishIfComplete()
{
    if (!m_round || !m_round->hasPosition || (!m_round->artwork && m_artworkWait.isSet()))
        return;
    m_artworkWait.cancel();
    report(*std::exchange(m_round, {}));
    if (m_isOutdated)
        scheduleUpdate();
}

void MediaAdapter::report(Round round)
{
    auto& state = round.reading.state;
    const auto& url = round.reading.artworkUrl;
    if (!round.artwork) {
        if (m_last && m_last->artworkUrl == url)
            state.artworkID = m_last->state.artworkID;
    } else if (!round.artwork->id.isEmpty()) {
        state.artworkID = round.artwork->id;
        // The other side keeps few of them, so one that comes back is sent again.
        if (std::exchange(m_sentArtwork, round.artwork->id) != round.artwork->id)
            m_send(MediaArtwork { round.artwork->id, round.artwork->file });
    }
    if (!std::exchange(m_mustReport, false) && saysNothingNew(state))
        return;
    m_last = { state, url };
    m_isIdleReported = false;
    m_send(state);
}

void MediaAdapter::reportIdle()
{
    m_fetcher.fetch({}, {});
    m_player.clear();
    m_round.reset();
    m_last.reset();
    if (!std::exchange(m_isIdleReported, true))
        m_send(MediaIdle {});
}

bool MediaAdapter::saysNothingNew(const MediaState& state) const
{
    if (!m_last)
        return false;
    auto expected = m_last->state;
    expected.elapsed = expected.elapsedAt(*state.timestamp);
    if (std::abs(expected.elapsed - state.elapsed) >= tolerance)
        return false;
    expected.elapsed = state.elapsed;
    expected.timestamp = state.timestamp;
    return expected == state;
}

} // namespace nimbarrow
