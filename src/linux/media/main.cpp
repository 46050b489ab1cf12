#include "linux/media/MediaAdapter.h"
#include "linux/session/SessionBus.h"
#include "mediaprotocol/AdapterOptions.h"
#include "mediaprotocol/LineCutter.h"
#include "qt/QtScheduler.h"
#include "qt/QtWorkQueues.h"
#include "qt/SystemClock.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <unistd.h>

namespace {

using namespace nimbarrow;
using namespace std::chrono_literals;

// After a restart of the bus its first moments count; a session without one is asked now and then.
constexpr auto shortestBusWait = 1s;
constexpr auto longestBusWait = 30s;

/// Waits for the reader of the pipe. When it has gone, the signal of the broken pipe ends the program.
void send(const MediaMessage& message)
{
    const auto line = encode(message);
    QByteArrayView rest(line);
    while (!rest.isEmpty()) {
        const auto count = ::write(STDOUT_FILENO, rest.data(), static_cast<std::size_t>(rest.size()));
        if (count < 0 && errno != EINTR)
            return QCoreApplication::quit();
        rest = rest.sliced(std::max<ssize_t>(count, 0));
    }
}

/// The adapter, from the moment there is a bus for it.
class Session {
public:
    explicit Session(std::optional<ArtworkDownload> download)
        : m_download(std::move(download))
    {
    }

    void start(std::chrono::seconds nextWait = shortestBusWait)
    {
        if (!sessionBusAnswers()) {
            m_retry = m_scheduler.after(
                nextWait, [this, nextWait] { start(std::min(2 * nextWait, longestBusWait)); });
            return;
        }
        auto bus = liveSessionBus();
        if (!bus)
            return QCoreApplication::quit();
        // Without the bus there is nothing more to say; whoever started us starts another one.
        bus->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
            QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
            QCoreApplication::instance(), SLOT(quit()));
        m_adapter.emplace(*bus, m_clock, m_scheduler, m_queues, m_download, send);
        m_adapter->start();
    }

    void carryOut(const MediaCommand& command)
    {
        if (m_adapter)
            m_adapter->carryOut(command);
    }

private:
    const SystemClock m_clock;
    QtScheduler m_scheduler;
    QtWorkQueues m_queues;
    const std::optional<ArtworkDownload> m_download;
    Timer m_retry;
    std::optional<MediaAdapter> m_adapter;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const bool mayDownload = !QCoreApplication::arguments().contains(adapteroptions::withoutNetwork);
    Session session(mayDownload ? std::optional(ArtworkDownload()) : std::nullopt);

    LineCutter lines(longestCommand);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        std::array<char, 4096> bytes {};
        const auto count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            return;
        if (count <= 0)
            return QCoreApplication::quit();
        for (const auto& line : lines.add({ bytes.data(), count })) {
            if (const auto command = decodeCommand(line))
                session.carryOut(*command);
        }
    });
    // Also without a bus: it may come, and nobody else could wait for it.
    send(MediaReady {});
    session.start();
    return QCoreApplication::exec();
}
