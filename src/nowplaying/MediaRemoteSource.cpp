#include "nowplaying/MediaRemoteSource.h"

#include "nowplaying/AdapterLines.h"
#include "nowplaying/DecimalText.h"
#include "nowplaying/NowPlayingLog.h"
#include "platform/AdapterCommand.h"
#include "platform/AdapterProcess.h"
#include "platform/WorkQueue.h"

#include <QPointer>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

using namespace std::chrono_literals;

constexpr auto longestStart = 5s;
constexpr auto shortLife = 10s;
constexpr auto longestFarewell = 1s;
constexpr auto longestDelay = 30s;
constexpr auto mostFailedStarts = 3;

// None, 1, 3, 7 ... seconds.
std::chrono::seconds relaunchDelay(int failures)
{
    // Five of them reach the longest delay; the shift must not grow beyond its number.
    return std::min(longestDelay, std::chrono::seconds((1 << std::min(failures, 5)) - 1));
}

} // namespace

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

void MediaRemoteSource::seek(double to)
{
    if (std::isfinite(to))
        send("seek " + shortestDecimal(to).toLatin1());
}

void MediaRemoteSource::setVolume(double volume)
{
    if (std::isfinite(volume))
        send("volume " + wholeVolume(volume).toLatin1());
}

void MediaRemoteSource::launch()
{
    if (m_stopping || m_process)
        return;
    const auto call = m_ports.command.find();
    if (!call) {
        becomeUnavailable();
        return;
    }
    m_lines = std::make_shared<AdapterLines>();
    m_ready = false;
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
    const auto messages = std::make_shared<std::vector<AdapterMessage>>();
    m_queue->run(
        [messages, bytes, lines = m_lines] {
            for (const auto& line : lines->add(bytes)) {
                if (auto message = readAdapterMessage(line))
                    messages->push_back(*std::move(message));
            }
        },
        this,
        [this, messages, process = QPointer(m_process.get())] {
            for (const auto& message : *messages) {
                // What is delivered may stop this source.
                if (!process || process != m_process.get())
                    return;
                handle(message);
            }
            if (process && process == m_process.get())
                process->resume();
        });
}

void MediaRemoteSource::handle(const AdapterMessage& message)
{
    if (std::holds_alternative<adaptermessage::Ready>(message))
        becomeReady();
    else if (std::holds_alternative<adaptermessage::Idle>(message))
        call(onSnapshot, NowPlayingSnapshot::idle(m_ports.clock.wallTime()));
    else if (const auto* artwork = std::get_if<adaptermessage::Artwork>(&message))
        call(onArtwork, artwork->id, artwork->image);
    else if (const auto* state = std::get_if<adaptermessage::State>(&message))
        deliver(*state);
}

void MediaRemoteSource::becomeReady()
{
    qCInfo(logNowPlaying, "adapter ready");
    m_ready = true;
    m_failedStarts = 0;
    m_readyTimeout.cancel();
}

void MediaRemoteSource::deliver(const adaptermessage::State& state)
{
    NowPlayingSnapshot snapshot;
    snapshot.app = NowPlayingApp::running(state.pid, m_ports.applications);
    snapshot.track = state.track;
    snapshot.isPlaying = state.isPlaying;
    snapshot.elapsed = state.elapsed;
    snapshot.rate = state.rate;
    snapshot.date = state.timestamp.value_or(m_ports.clock.wallTime());
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
    m_quickDeaths = m_ports.clock.now() - m_launchDate < shortLife ? m_quickDeaths + 1 : 0;
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

void MediaRemoteSource::send(const QByteArray& command)
{
    if (m_ready && m_process)
        m_process->write(command + '\n');
}

} // namespace nimbarrow
