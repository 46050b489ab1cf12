#include "linux/media/MediaAdapter.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

// Players tell of one event in several messages.
constexpr auto debounce = 50ms;
// Long enough for a file: then the state comes with its artwork, and a notice of it has the cover.
constexpr auto artworkPatience = 250ms;

} // namespace

MediaAdapter::MediaAdapter(
    const QDBusConnection& bus, const Clock& clock, Scheduler& scheduler, WorkQueues& queues, Send send)
    : m_clock(clock)
    , m_scheduler(scheduler)
    , m_players(bus)
    , m_fetcher(scheduler, queues)
    , m_send(std::move(send))
{
    connect(&m_players, &MprisPlayers::changed, this, &MediaAdapter::changed);
    connect(&m_players, &MprisPlayers::seeked, this, [this] {
        m_jumped = true;
        changed();
    });
}

void MediaAdapter::start()
{
    m_send(readyLine());
    m_players.start();
}

void MediaAdapter::carryOut(const MediaCommand& command)
{
    if (m_player)
        m_player->carryOut(command);
}

void MediaAdapter::changed()
{
    if (!m_debounce.isSet())
        m_debounce = m_scheduler.after(debounce, [this] {
            m_debounce.cancel();
            look();
        });
}

void MediaAdapter::look()
{
    // At the start the first answer is not yet the right one.
    if (!m_players.areSettled() && !m_told && !m_toldIdle)
        return;
    const auto round = ++m_rounds;
    m_patience.cancel();
    m_player = m_players.choose();
    if (!m_player)
        return tellIdle();

    m_round = {};
    m_round.state.reading = m_player->reading();
    m_round.state.pid = m_player->pid();
    m_patience = m_scheduler.after(artworkPatience, [this] {
        m_patience.cancel();
        goOn();
    });
    m_player->position([this, round](std::optional<double> elapsed) {
        if (round != m_rounds)
            return;
        auto& state = m_round.state;
        state.timestamp = now();
        const bool sameTrack = m_told && m_told->pid == state.pid
            && m_told->reading.title == state.reading.title
            && m_told->reading.duration == state.reading.duration;
        // A player that does not know where it is has just been asked to pause, as a rule.
        const auto best = elapsed ? *elapsed : sameTrack ? m_told->elapsedAt(state.timestamp) : 0.0;
        state.elapsed = state.reading.duration > 0 ? std::min(best, state.reading.duration) : best;
        m_round.positionKnown = true;
        goOn();
    });
    m_fetcher.fetch(m_round.state.reading.artworkUrl, [this](const Artwork& artwork) {
        m_round.artwork = artwork;
        goOn();
    });
}

void MediaAdapter::goOn()
{
    if (!m_round.positionKnown || (!m_round.artwork && m_patience.isSet()))
        return;
    m_patience.cancel();
    tell();
}

void MediaAdapter::tell()
{
    auto& state = m_round.state;
    if (m_round.artwork) {
        state.artworkID = m_round.artwork->id;
        // The other side keeps few of them, so one that comes back is sent again.
        if (!state.artworkID.isEmpty() && state.artworkID != m_toldArtwork) {
            m_toldArtwork = state.artworkID;
            m_send(artworkLine(m_round.artwork->id, m_round.artwork->file));
        }
    } else if (m_told && m_told->reading.artworkUrl == state.reading.artworkUrl) {
        state.artworkID = m_told->artworkID;
    }
    const bool jumped = std::exchange(m_jumped, false);
    if (!jumped && m_told && m_told->tellsTheSameAs(state))
        return;
    m_told = state;
    m_toldIdle = false;
    m_send(stateLine(state));
}

void MediaAdapter::tellIdle()
{
    m_fetcher.fetch({}, {});
    m_jumped = false;
    m_told.reset();
    if (!std::exchange(m_toldIdle, true))
        m_send(idleLine());
}

double MediaAdapter::now() const
{
    return static_cast<double>(m_clock.wallTime().toMSecsSinceEpoch()) / 1000;
}

} // namespace nimbarrow
