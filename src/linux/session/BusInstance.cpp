#include "linux/session/BusInstance.h"

#include "linux/session/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

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

BusInstance::~BusInstance()
{
    if (m_lock >= 0)
        ::close(m_lock);
}

bool BusInstance::anotherIsRunning()
{
    if (m_anotherIsRunning)
        return *m_anotherIsRunning;
    if (const auto bus = liveSessionBus()) {
        auto* const names = bus->interface();
        constexpr int patience = 2000; // ms
        names->setTimeout(patience);
        const auto reply = names->registerService(u"ua.tessak.Nimbarrow"_s,
            QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
        if (reply.isValid()) {
            m_anotherIsRunning = reply.value() != QDBusConnectionInterface::ServiceRegistered;
            return *m_anotherIsRunning;
        }
    }
    m_anotherIsRunning = anotherHoldsLock();
    return *m_anotherIsRunning;
}

bool BusInstance::anotherHoldsLock()
{
    const auto path = QFile::encodeName(lockPath());
    m_lock = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    // Where nothing can be locked nothing is known, and the program rather starts.
    return m_lock >= 0 && ::flock(m_lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

} // namespace nimbarrow
