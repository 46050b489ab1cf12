#include "nowplaying/MediaRemoteSource.h"

#include "images/ImageCodec.h"
#include "mediaprotocol/AdapterOptions.h"
#include "mediaprotocol/LineCutter.h"
#include "platform/AdapterCommand.h"
#include "platform/AdapterProcess.h"
#include "platform/WorkQueue.h"

#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logNowPlaying, "ua.tessak.Nimbarrow.nowplaying")

constexpr auto longestStart = 5s;
constexpr auto shortLife = 10s;
constexpr auto longestFarewell = 1s;
constexpr auto longestDelay = 30s;
constexpr auto mostFailedStarts = 3;

// A line for each change, 20 in a second at most, and covers of some megabytes.
constexpr auto countingTime = 10s;
constexpr qsizetype mostLines = 1000;
constexpr qsizetype mostBytes = qsizetype { 160 } * 1024 * 1024;
constexpr QChar unitSeparator(0x1f);

// None, 1, 3, 7 ... seconds.
std::chrono::seconds relaunchDelay(int failures)
{
    // Five of them reach the longest delay; the shift must not grow beyond its number.
    return std::min(longestDelay, std::chrono::seconds((1 << std::min(failures, 5)) - 1));
}

QString identityOf(const MediaState& state)
{
    // Without digits after the point, whatever the size of the number.
    const auto seconds = QString::number(std::trunc(state.duration), 'f', 0);
    return QStringList { state.title, state.artist, state.album, seconds }.join(unitSeparator);
}

} // namespace

/// What one read of the pipe brought.
struct MediaRemoteSource::Slice {
    struct Item {
        MediaMessage message;
        /// That of an artwork message.
        QImage image;
    };

    qsizetype bytes = 0;
    qsizetype lines = 0;
    bool hasEndlessLine = false;
    std::vector<Item> items;
};

MediaRemoteSource::MediaRemoteSource(const Ports& ports, QObject* parent)
    : NowPlayingSource(parent)
    , m_ports(ports)
    , m_launchDate(ports.clock.now())
    , m_queue(ports.queues.serial(u"ua.tessak.Nimbarrow.nowplaying"_s))
{
}

MediaRemoteSource::~MediaRemoteSource() = default;

void MediaRemoteSource::start()
{
    m_stopping = false;
    launch();
}

void MediaRemoteSource::stop()
{
    m_stopping = true;
    m_ready = false;
    m_readyTimeout.cancel();
    m_relaunch.cancel();
    if (!m_process)
        return;
    // It is expected to end by itself when its input does.
    m_process->disconnect(this);
    m_process->closeInput();
    m_leaving = std::move(m_process);
    const auto forget = [this] {
        m_leavingTimeout.cancel();
        m_leaving.release()->deleteLater();
    };
    connect(m_leaving.get(), &AdapterProcess::ended, this, forget);
    connect(m_leaving.get(), &AdapterProcess::failedToLaunch, this, forget);
    // Nobody listens any more, but what it says must not keep it from ending.
    connect(m_leaving.get(), &AdapterProcess::output, m_leaving.get(), &AdapterProcess::resume);
    m_leaving->resume();
    m_leavingTimeout = m_ports.scheduler.after(longestFarewell, [this] { m_leaving->terminate(); });
}

void MediaRemoteSource::launch()
{
    if (m_stopping || m_process)
        return;
    auto call = m_ports.command.find();
    if (!call) {
        becomeUnavailable();
        return;
    }
    if (!m_ports.fetchesArtwork)
        call->arguments << adapteroptions::withoutNetwork;
    m_lines = std::make_shared<LineCutter>(longestMessage);
    m_ready = false;
    m_isFlooding = false;
    m_countedSince = m_ports.clock.now();
    m_countedBytes = 0;
    m_countedLines = 0;
    m_process = m_ports.processes.launch(*call);
    connect(m_process.get(), &AdapterProcess::launched, this, &MediaRemoteSource::launched);
    connect(m_process.get(), &AdapterProcess::failedToLaunch, this, &MediaRemoteSource::failedToLaunch);
    connect(m_process.get(), &AdapterProcess::output, this, &MediaRemoteSource::read);
    connect(m_process.get(), &AdapterProcess::ended, this, &MediaRemoteSource::processEnded);
}

void MediaRemoteSource::launched(qint64 pid)
{
    qCInfo(logNowPlaying, "adapter launched, pid %lld", static_cast<long long>(pid));
    m_launchDate = m_ports.clock.now();
    m_readyTimeout = m_ports.scheduler.after(longestStart, [this] {
        if (m_process && !m_ready)
            m_process->terminate();
    });
}

void MediaRemoteSource::failedToLaunch(const QString& why)
{
    qCCritical(logNowPlaying, "adapter failed to launch: %s", qUtf8Printable(why));
    m_process.release()->deleteLater();
    becomeUnavailable();
}

// Reading what it says takes long where there are pictures in it. The process waits meanwhile.
void MediaRemoteSource::read(const QByteArray& bytes)
{
    if (m_isFlooding) {
        // Nobody listens any more, but what it says must not keep it from ending.
        m_process->resume();
        return;
    }
    const auto slice = std::make_shared<Slice>();
    m_queue->run(
        [slice, bytes, lines = m_lines] {
            slice->bytes = bytes.size();
            for (const auto& line : lines->add(bytes)) {
                ++slice->lines;
                auto message = decodeMessage(line);
                if (!message)
                    continue;
                const auto* artwork = std::get_if<MediaArtwork>(&*message);
                auto image
                    = artwork != nullptr ? imagecodec::thumbnail(artwork->file, artworkSide) : QImage();
                slice->items.push_back({ *std::move(message), std::move(image) });
            }
            slice->hasEndlessLine = lines->hasDropped();
        },
        this,
        [this, slice, process = QPointer(m_process.get())] {
            for (const auto& [message, image] : slice->items) {
                // What is delivered may stop this source.
                if (!process || process != m_process.get())
                    return;
                if (const auto* artwork = std::get_if<MediaArtwork>(&message))
                    call(onArtwork, artwork->id, image);
                else
                    handle(message);
            }
            if (!process || process != m_process.get())
                return;
            if (isFlood(*slice))
                endFlood();
            process->resume();
        });
}

bool MediaRemoteSource::isFlood(const Slice& slice)
{
    const auto now = m_ports.clock.now();
    if (now - m_countedSince > countingTime) {
        m_countedSince = now;
        m_countedBytes = 0;
        m_countedLines = 0;
    }
    m_countedBytes += slice.bytes;
    m_countedLines += slice.lines;
    return slice.hasEndlessLine || m_countedBytes > mostBytes || m_countedLines > mostLines;
}

void MediaRemoteSource::endFlood()
{
    qCWarning(logNowPlaying, "adapter says too much and is ended");
    m_isFlooding = true;
    m_process->terminate();
}

void MediaRemoteSource::handle(const MediaMessage& message)
{
    if (std::holds_alternative<MediaReady>(message))
        becomeReady();
    else if (std::holds_alternative<MediaIdle>(message))
        call(onSnapshot, NowPlayingSnapshot::idle(m_ports.clock.wallTime()));
    else if (const auto* state = std::get_if<MediaState>(&message))
        deliver(*state);
}

void MediaRemoteSource::becomeReady()
{
    qCInfo(logNowPlaying, "adapter ready");
    m_ready = true;
    m_failedStarts = 0;
    m_readyTimeout.cancel();
}

void MediaRemoteSource::deliver(const MediaState& state)
{
    // What is recorded while it plays, and a length that was estimated, make no other track.
    if (!m_lastState || !m_lastState->isSameTrack(state))
        m_trackID = identityOf(state);
    m_lastState = state;

    NowPlayingSnapshot snapshot;
    snapshot.app = NowPlayingApp::running(state.pid, m_ports.applications);
    snapshot.track = NowPlayingTrack { m_trackID, state.title, state.artist, state.album, state.duration };
    snapshot.isPlaying = state.isPlaying;
    snapshot.elapsed = state.elapsed;
    snapshot.rate = state.rate;
    snapshot.date = state.timestamp.value_or(m_ports.clock.wallTime());
    snapshot.canSeek = state.canSeek;
    snapshot.artworkID = state.artworkID;
    snapshot.volume = state.volume;
    call(onSnapshot, snapshot);
}

void MediaRemoteSource::processEnded()
{
    m_readyTimeout.cancel();
    m_process.release()->deleteLater();
    const auto wasReady = std::exchange(m_ready, false);
    if (!wasReady && ++m_failedStarts >= mostFailedStarts) {
        becomeUnavailable();
        return;
    }
    // One that had to be ended did not live well, however long it did.
    const bool wasShort = m_isFlooding || m_ports.clock.now() - m_launchDate < shortLife;
    m_quickDeaths = wasShort ? m_quickDeaths + 1 : 0;
    const auto delay = relaunchDelay(std::max(m_quickDeaths, m_failedStarts));
    qCInfo(logNowPlaying, "adapter exited (ready: %d), relaunch in %.0fs", wasReady ? 1 : 0,
        std::chrono::duration<double>(delay).count());
    m_relaunch = m_ports.scheduler.after(delay, [this] { launch(); });
}

void MediaRemoteSource::becomeUnavailable()
{
    qCCritical(logNowPlaying, "adapter unavailable, falling back to Music over AppleScript");
    stop();
    call(onUnavailable);
}

void MediaRemoteSource::send(const MediaCommand& command)
{
    const auto line = encode(command);
    if (m_ready && m_process && !line.isEmpty())
        m_process->write(line);
}

} // namespace nimbarrow
