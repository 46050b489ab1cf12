#include "linux/media/CommandLines.h"
#include "linux/media/MediaAdapter.h"
#include "linux/session/SessionBus.h"
#include "qt/QtScheduler.h"
#include "qt/QtWorkQueues.h"
#include "qt/SystemClock.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <unistd.h>

namespace {

/// Waits for the reader of the pipe. When it has gone, the signal of the broken pipe ends the program.
void tell(const QByteArray& line)
{
    QByteArrayView rest(line);
    while (!rest.isEmpty()) {
        const auto count = ::write(STDOUT_FILENO, rest.data(), static_cast<std::size_t>(rest.size()));
        if (count < 0 && errno != EINTR)
            return QCoreApplication::quit();
        rest = rest.sliced(std::max<ssize_t>(count, 0));
    }
}

} // namespace

int main(int argc, char* argv[])
{
    using namespace nimbarrow;
    QCoreApplication application(argc, argv);
    auto bus = liveSessionBus();
    if (!bus)
        return 1;

    const SystemClock clock;
    QtScheduler scheduler;
    QtWorkQueues queues;
    MediaAdapter adapter(*bus, clock, scheduler, queues, tell);

    CommandLines lines;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &adapter, [&] {
        std::array<char, 4096> bytes {};
        const auto count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            return;
        if (count <= 0)
            return QCoreApplication::quit();
        for (const auto& line : lines.take({ bytes.data(), count })) {
            if (const auto command = parseMediaCommand(line))
                adapter.carryOut(*command);
        }
    });
    // Without the bus there is nothing more to tell; whoever started us starts another one.
    bus->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), &application,
        SLOT(quit()));
    adapter.start();
    return QCoreApplication::exec();
}
