#include "linux/session/BusInstance.h"

#include "linux/session/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QString lockPath()
{
    const auto runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime) && QDir(runtime).exists())
        return runtime + "/ua.tessak.Nimbarrow.lock"_L1;
    // Other people use this folder too.
    return QDir::tempPath() + "/ua.tessak.Nimbarrow-%1.lock"_L1.arg(QString::number(::getuid()));
}

} // namespace

BusInstance::BusInstance(QString dataFolder)
    : m_dataFolder(std::move(dataFolder))
{
}

BusInstance::~BusInstance()
{
    for (const auto lock : m_locks)
        ::close(lock);
}

bool BusInstance::anotherIsRunning()
{
    if (!m_anotherIsRunning)
        m_anotherIsRunning = anotherHoldsData() || findAnother();
    return *m_anotherIsRunning;
}

bool BusInstance::findAnother()
{
    if (const auto bus = liveSessionBus()) {
        auto* const names = bus->interface();
        constexpr int patience = 2000; // ms
        names->setTimeout(patience);
        const auto reply = names->registerService(u"ua.tessak.Nimbarrow"_s,
            QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
        if (reply.isValid())
            return reply.value() != QDBusConnectionInterface::ServiceRegistered;
    }
    return anotherHolds(lockPath());
}

bool BusInstance::anotherHoldsData()
{
    QDir().mkpath(m_dataFolder);
    // Nothing is left in a folder of somebody else, to which a link may lead.
    return QFileInfo(m_dataFolder).ownerId() == ::geteuid() && anotherHolds(m_dataFolder + "/lock"_L1);
}

bool BusInstance::anotherHolds(const QString& path)
{
    const auto lock = ::open(
        QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    // Where nothing can be locked nothing is known, and the program rather starts.
    if (lock < 0)
        return false;
    m_locks.push_back(lock);
    return ::flock(lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

} // namespace nimbarrow
