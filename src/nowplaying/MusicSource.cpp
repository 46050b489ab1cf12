#include "nowplaying/MusicSource.h"

#include "images/ImageCodec.h"
#include "mediaprotocol/DecimalText.h"
#include "platform/Clock.h"
#include "platform/MusicApp.h"
#include "platform/WorkQueue.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

const auto statusScript = uR"(tell application "Music"
    set ps to "stopped"
    if player state is playing then set ps to "playing"
    if player state is paused then set ps to "paused"
    set vol to sound volume
    if ps is "stopped" then return {ps, "", "", "", 0, 0, vol, ""}
    try
        set t to current track
        return {ps, name of t, artist of t, album of t, duration of t, player position, vol, persistent ID of t}
    on error
        return {ps, "", "", "", 0, 0, vol, ""}
    end try
end tell)"_s;

const auto artworkScript = uR"(tell application "Music"
    try
        return raw data of artwork 1 of current track
    on error
        return ""
    end try
end tell)"_s;

const auto volumeScript = uR"(tell application "Music" to get sound volume)"_s;

/// No picture is this small; what a track without artwork gives is.
constexpr qsizetype longestNoArtwork = 64;
constexpr auto unknownVolume = 50;

/// The places of the status script's list.
enum Item { State, Title, Artist, Album, Duration, Position, Volume, PersistentId, Count };

double secondsOf(const QVariant& value)
{
    const auto seconds = value.toDouble();
    return std::isfinite(seconds) ? std::max(0.0, seconds) : 0;
}

int volumeOf(const QVariant& value)
{
    bool isNumber = false;
    const auto volume = value.toInt(&isNumber);
    return isNumber ? volume : unknownVolume;
}

} // namespace

class MusicSource::Scripts {
public:
    explicit Scripts(Scripting& scripting)
        : m_scripting(scripting)
    {
    }

    /// None when the script failed.
    std::optional<QVariantList> run(const QString& script)
    {
        const auto result = m_scripting.run(script);
        m_refusals << (result.error && result.error->isRefusal);
        return result.error ? std::nullopt : std::optional(result.values);
    }

    /// For each script in turn, whether it was refused.
    [[nodiscard]] const QList<bool>& refusals() const { return m_refusals; }

private:
    Scripting& m_scripting;
    QList<bool> m_refusals;
};

MusicSource::MusicSource(const Ports& ports, QObject* parent)
    : NowPlayingSource(parent)
    , m_ports(ports)
    , m_queue(ports.queues.serial(u"ua.tessak.Nimbarrow.music"_s))
{
}

MusicSource::~MusicSource() = default;

template <typename Work, typename Done>
void MusicSource::onQueue(Work work, Done done)
{
    using Result = std::invoke_result_t<Work, Scripts&>;
    const auto scripts = std::make_shared<Scripts>(m_ports.scripting);
    const auto result = std::make_shared<Result>();
    m_queue->run([scripts, result, work] { *result = work(*scripts); }, this,
        [this, scripts, result, done] {
            for (const auto refused : scripts->refusals()) {
                if (std::exchange(m_permissionDenied, refused) != refused)
                    call(onPermissionDenied, refused);
            }
            done(*result);
        });
}

void MusicSource::start()
{
    if (!m_playerInfoObserver) {
        m_playerInfoObserver
            = connect(&m_ports.app, &MusicApp::playerInfoChanged, this, &MusicSource::refresh);
        m_terminationObserver
            = connect(&m_ports.app, &MusicApp::terminated, this, &MusicSource::markNotRunning);
    }
    refresh();
}

void MusicSource::stop()
{
    disconnect(std::exchange(m_playerInfoObserver, {}));
    disconnect(std::exchange(m_terminationObserver, {}));
}

void MusicSource::seek(double to)
{
    if (!m_ports.app.running() || !std::isfinite(to))
        return;
    const auto script = uR"(tell application "Music" to set player position to )"_s + shortestDecimal(to);
    onQueue([script](Scripts& scripts) { return scripts.run(script); }, [](const auto&) {});
}

void MusicSource::setVolume(double volume)
{
    if (!m_ports.app.running() || std::isnan(volume))
        return;
    const auto script = uR"(tell application "Music" to set sound volume to )"_s + wholeVolume(volume);
    onQueue([script](Scripts& scripts) { return scripts.run(script); }, [](const auto&) {});
}

void MusicSource::refresh()
{
    if (!m_ports.app.running()) {
        markNotRunning();
        return;
    }
    if (m_refreshInFlight) {
        m_refreshPending = true;
        return;
    }
    m_refreshInFlight = true;
    onQueue([this](Scripts& scripts) { return read(scripts); },
        [this](const std::optional<Reading>& reading) {
            apply(reading);
            m_refreshInFlight = false;
            if (std::exchange(m_refreshPending, false))
                refresh();
        });
}

void MusicSource::refreshVolume()
{
    if (!m_ports.app.running()) {
        call(onVolume, std::optional<double>());
        return;
    }
    onQueue([](Scripts& scripts) { return scripts.run(volumeScript); },
        [this](const std::optional<QVariantList>& values) {
            if (values && !values->isEmpty())
                call(onVolume, std::optional<double>(values->constFirst().toInt()));
        });
}

// On the queue.
std::optional<MusicSource::Reading> MusicSource::read(Scripts& scripts)
{
    const auto items = scripts.run(statusScript);
    if (!items || items->size() < Count)
        return {};
    const auto text = [&items](Item item) { return items->at(item).toString(); };
    Reading reading;
    reading.volume = volumeOf(items->at(Volume));
    const auto state = text(State);
    if (state != "playing"_L1 && state != "paused"_L1) {
        m_artworkFetchedFor.reset();
        return reading;
    }
    const auto id = text(PersistentId);
    reading.snapshot.track
        = NowPlayingTrack { id, text(Title), text(Artist), text(Album), secondsOf(items->at(Duration)) };
    reading.snapshot.isPlaying = state == "playing"_L1;
    reading.snapshot.elapsed = secondsOf(items->at(Position));
    reading.snapshot.rate = 1;
    reading.snapshot.artworkID = id;
    if (m_artworkFetchedFor != id) {
        const auto data = scripts.run(artworkScript).value_or(QVariantList()).value(0).toByteArray();
        reading.artwork
            = { id, data.size() > longestNoArtwork ? imagecodec::thumbnail(data, artworkSide) : QImage() };
        m_artworkFetchedFor = id;
    }
    return reading;
}

void MusicSource::apply(const std::optional<Reading>& reading)
{
    if (!reading)
        return;
    auto snapshot = reading->snapshot;
    snapshot.date = m_ports.clock.wallTime();
    if (const auto running = m_ports.app.running(); running && snapshot.track) {
        const auto name = running->name.isEmpty() ? u"Music"_s : running->name;
        snapshot.app = NowPlayingApp { running->pid, bundleID.toString(), name, running->icon };
    }
    if (reading->artwork)
        call(onArtwork, reading->artwork->first, reading->artwork->second);
    call(onSnapshot, snapshot);
    call(onVolume, std::optional(reading->volume));
}

void MusicSource::perform(QStringView verb)
{
    if (!m_ports.app.running())
        return;
    const auto script = uR"(tell application "Music" to )"_s + verb.toString();
    onQueue(
        [this, script](Scripts& scripts) {
            scripts.run(script);
            return read(scripts);
        },
        [this](const std::optional<Reading>& reading) { apply(reading); });
}

void MusicSource::markNotRunning()
{
    call(onSnapshot, NowPlayingSnapshot::idle(m_ports.clock.wallTime()));
    call(onVolume, std::optional<double>());
    m_queue->run([this] { m_artworkFetchedFor.reset(); });
}

} // namespace nimbarrow
