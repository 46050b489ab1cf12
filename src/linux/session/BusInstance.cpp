#include "linux/session/BusInstance.h"

#include "linux/session/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

const QString busName = u"ua.tessak.Nimbarrow"_s;
const QString applicationPath = u"/ua/tessak/Nimbarrow"_s;
const QString applicationInterface = u"org.freedesktop.Application"_s;
const QString reportPath = u"/ua/tessak/Nimbarrow/report"_s;
const QString toggleAction = u"toggle"_s;
const QString quitAction = u"quit"_s;

constexpr int patience = 2000; // ms
/// A copy that is still starting takes its time.
constexpr int patienceWithCopy = 10'000; // ms

QDBusMessage callFor(Instance::Request request)
{
    const auto method = request == Instance::Request::Open ? u"Activate"_s : u"ActivateAction"_s;
    auto call = QDBusMessage::createMethodCall(busName, applicationPath, applicationInterface, method);
    // It is the running copy that is asked, never a new one.
    call.setAutoStartService(false);
    if (request != Instance::Request::Open)
        call << (request == Instance::Request::Quit ? quitAction : toggleAction) << QVariantList();
    return call << QVariantMap();
}

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

bool BusInstance::ask(Request request)
{
    const auto bus = liveSessionBus();
    if (!bus)
        return false;
    // A copy that has just been started has its data before it has its name.
    const QDeadlineTimer deadline(m_anotherIsRunning.value_or(false) ? 3s : 0s);
    for (;;) {
        const QDBusError error(bus->call(callFor(request), QDBus::Block, patienceWithCopy));
        if (error.type() != QDBusError::ServiceUnknown || deadline.hasExpired())
            return !error.isValid();
        QThread::msleep(50);
    }
}

std::optional<QString> BusInstance::askForReport()
{
    const auto bus = liveSessionBus();
    if (!bus)
        return {};
    auto call = QDBusMessage::createMethodCall(busName, reportPath, busName, u"Report"_s);
    call.setAutoStartService(false);
    const QDBusReply<QString> report = bus->call(call, QDBus::Block, patience);
    return report.isValid() ? std::optional(report.value()) : std::nullopt;
}

void BusInstance::setReport(std::function<QString()> report)
{
    m_report.text = std::move(report);
}

void BusInstance::Activate(const QVariantMap& /*platformData*/)
{
    Q_EMIT asked(Request::Open);
}

void BusInstance::Open(const QStringList& /*links*/, const QVariantMap& platformData)
{
    Activate(platformData);
}

void BusInstance::ActivateAction(
    const QString& action, const QVariantList& /*parameters*/, const QVariantMap& /*platformData*/)
{
    if (action == toggleAction)
        Q_EMIT asked(Request::ToggleKeyboard);
    else if (action == quitAction)
        Q_EMIT asked(Request::Quit);
    else
        sendErrorReply(QDBusError::InvalidArgs, u"There is no action \"%1\"."_s.arg(action));
}

bool BusInstance::findAnother()
{
    if (const auto bus = liveSessionBus()) {
        auto* const names = bus->interface();
        names->setTimeout(patience);
        // First, for what was asked of the name before it had an owner arrives with it.
        QDBusConnection connection(*bus);
        connection.registerObject(
            applicationPath, applicationInterface, this, QDBusConnection::ExportScriptableInvokables);
        connection.registerObject(
            reportPath, busName, &m_report, QDBusConnection::ExportScriptableInvokables);
        const auto reply = names->registerService(busName, QDBusConnectionInterface::DontQueueService,
            QDBusConnectionInterface::DontAllowReplacement);
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
