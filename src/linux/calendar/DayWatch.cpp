#include "linux/calendar/DayWatch.h"

#include "linux/session/BusCalls.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/timerfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QDateTime tomorrow()
{
    return QDate::currentDate().addDays(1).startOfDay();
}

/// Which zone a file stands for: mostly it is a link whose name tells.
QString identity(const QString& file)
{
    const QFileInfo info(file);
    return info.symLinkTarget() + u' '
        + QString::number(info.fileTime(QFile::FileModificationTime).toMSecsSinceEpoch());
}

} // namespace

DayWatch::DayWatch(std::optional<QDBusConnection> system)
    : DayWatch(std::move(system), Places())
{
}

DayWatch::DayWatch(std::optional<QDBusConnection> system, Places places)
    : m_places(std::move(places))
    , m_timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC))
    , m_notifier(QSocketNotifier::Read)
{
    if (m_timer >= 0) {
        connect(&m_notifier, &QSocketNotifier::activated, this, &DayWatch::rung);
        m_notifier.setSocket(m_timer);
        m_notifier.setEnabled(true);
        wind();
    }
    connect(&m_zoneWatch, &QFileSystemWatcher::fileChanged, this, &DayWatch::zoneMayHaveChanged);
    connect(&m_zoneWatch, &QFileSystemWatcher::directoryChanged, this, &DayWatch::zoneMayHaveChanged);
    m_zone = identity(m_places.zoneFile);
    watchZone();
    if (system) {
        followBusSignal(*system, u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s,
            u"PrepareForSleep"_s, this, SLOT(sleepTold(bool)));
    }
}

DayWatch::~DayWatch()
{
    m_notifier.setEnabled(false);
    if (m_timer >= 0)
        ::close(m_timer);
}

void DayWatch::wind()
{
    const auto next = m_places.nextDay ? m_places.nextDay() : tomorrow();
    itimerspec when {};
    when.it_value.tv_sec = next.toMSecsSinceEpoch() / 1000;
    when.it_value.tv_nsec = next.toMSecsSinceEpoch() % 1000 * 1'000'000;
    // The kernel also tells when somebody sets the clock.
    ::timerfd_settime(m_timer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &when, nullptr);
}

void DayWatch::rung()
{
    quint64 times = 0;
    const auto size = ::read(m_timer, &times, sizeof times);
    if (size < 0 && errno != ECANCELED)
        return;
    wind();
    Q_EMIT dayChanged();
}

void DayWatch::sleepTold(bool begins)
{
    if (!begins)
        Q_EMIT dayChanged();
}

void DayWatch::watchZone()
{
    // The link is replaced as a rule, which only its folder tells; some write into the file itself.
    const QFileInfo file(m_places.zoneFile);
    const auto paths = m_zoneWatch.files() + m_zoneWatch.directories();
    for (const auto& path : { file.filePath(), file.path() }) {
        if (!paths.contains(path))
            m_zoneWatch.addPath(path);
    }
}

void DayWatch::zoneMayHaveChanged()
{
    // Other files of the folder are none of our business.
    const auto now = identity(m_places.zoneFile);
    if (now == m_zone || !QFileInfo::exists(m_places.zoneFile))
        return;
    m_zone = now;
    // The watch went with the file that was replaced.
    m_zoneWatch.removePath(m_places.zoneFile);
    watchZone();
    wind();
    Q_EMIT dayChanged();
}

} // namespace nimbarrow
