#include "linux/calendar/LinuxCalendarStore.h"

#include "linux/calendar/DayWatch.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <chrono>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr QStringView askedKey = u"calendarAccessRequested";

const QString sourcesService = u"org.gnome.evolution.dataserver.Sources5"_s;

/// The server may have to be started for its answer.
constexpr int serverPatience = 10'000; // ms
constexpr auto threadPatience = std::chrono::seconds(12);

QDBusMessage busCall(const QString& method)
{
    return QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
}

/// The server is not there for us, whatever its files say.
bool meansAbsent(const QDBusError& error)
{
    return error.type() == QDBusError::ServiceUnknown || error.name().contains(".Spawn."_L1);
}

} // namespace

LinuxCalendarStore::LinuxCalendarStore(UserDefaults& defaults, std::optional<QDBusConnection> session,
    Stores stores, std::unique_ptr<DayWatch> dayWatch)
    : m_defaults(defaults)
    , m_session(std::move(session))
    , m_stores(std::move(stores))
    , m_dayWatch(std::move(dayWatch))
{
    connect(m_dayWatch.get(), &DayWatch::dayChanged, this, &CalendarStore::dayChanged);
    // Who waits for a store then must not keep the program from ending.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &LinuxCalendarStore::close);
}

LinuxCalendarStore::~LinuxCalendarStore()
{
    close();
}

void LinuxCalendarStore::close()
{
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_settled.notify_all();
}

CalendarStore::Authorization LinuxCalendarStore::authorization()
{
    if (!m_defaults.boolean(askedKey))
        return Authorization::NotDetermined;
    const std::lock_guard lock(m_mutex);
    if (m_isRefused) {
        QMetaObject::invokeMethod(this, &LinuxCalendarStore::choose, Qt::QueuedConnection);
        return Authorization::Denied;
    }
    return m_store ? m_store->authorization() : Authorization::FullAccess;
}

void LinuxCalendarStore::requestFullAccess(std::function<void(bool)> answered)
{
    m_defaults.set(askedKey, true);
    m_whenSettled.emplace_back([this, answered = std::move(answered)] {
        if (m_store)
            m_store->requestFullAccess(answered);
        else
            answered(false);
    });
    choose();
}

std::shared_ptr<CalendarStore> LinuxCalendarStore::store()
{
    std::unique_lock lock(m_mutex);
    if (!m_store && !m_isRefused)
        QMetaObject::invokeMethod(this, &LinuxCalendarStore::choose, Qt::QueuedConnection);
    m_settled.wait_for(lock, threadPatience, [this] { return m_store || m_isRefused || m_isClosed; });
    return m_isClosed ? nullptr : m_store;
}

std::optional<QList<CalendarEvent>> LinuxCalendarStore::events(const QDateTime& start, const QDateTime& end)
{
    const auto chosen = store();
    if (!chosen)
        return {};
    return chosen->events(start, end);
}

void LinuxCalendarStore::create(const QString& title, const QDateTime& start, const QDateTime& end,
    std::function<void(const Created&)> done)
{
    m_whenSettled.emplace_back([this, title, start, end, done = std::move(done)] {
        if (m_store)
            m_store->create(title, start, end, done);
        else
            done({ CreateError::Failed, u"The calendars may not be used"_s, {} });
    });
    choose();
}

void LinuxCalendarStore::choose()
{
    if (m_isChoosing)
        return;
    m_isChoosing = true;
    if (m_store) {
        // Later, as every answer.
        QMetaObject::invokeMethod(this, &LinuxCalendarStore::runWaiting, Qt::QueuedConnection);
        return;
    }
    if (!m_session) {
        useStore(m_stores.folder());
        return;
    }
    auto* const names
        = new QDBusPendingCallWatcher(m_session->asyncCall(busCall(u"ListActivatableNames"_s)), this);
    connect(names, &QDBusPendingCallWatcher::finished, this, [this, names] {
        const QDBusPendingReply<QStringList> reply = *names;
        if (reply.isValid() && reply.value().contains(sourcesService))
            askTheServer();
        else
            useStore(m_stores.folder());
        names->deleteLater();
    });
}

void LinuxCalendarStore::askTheServer()
{
    const auto question
        = QDBusMessage::createMethodCall(sourcesService, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
    auto* const answer = new QDBusPendingCallWatcher(m_session->asyncCall(question, serverPatience), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        if (const auto error = answer->error(); error.type() == QDBusError::AccessDenied) {
            refuse();
        } else if (meansAbsent(error)) {
            useStore(m_stores.folder());
        } else {
            // Also without an answer: what is down now may come.
            m_serverWatch = std::make_unique<QDBusServiceWatcher>(
                sourcesService, *m_session, QDBusServiceWatcher::WatchForRegistration);
            connect(
                m_serverWatch.get(), &QDBusServiceWatcher::serviceRegistered, this, &CalendarStore::changed);
            useStore(m_stores.server());
        }
        answer->deleteLater();
    });
}

void LinuxCalendarStore::useStore(std::unique_ptr<CalendarStore> store)
{
    if (!store) {
        refuse();
        return;
    }
    connect(store.get(), &CalendarStore::changed, this, &CalendarStore::changed);
    {
        const std::lock_guard lock(m_mutex);
        m_store = std::move(store);
        m_settled.notify_all();
        if (std::exchange(m_isRefused, false))
            QMetaObject::invokeMethod(this, &CalendarStore::changed, Qt::QueuedConnection);
    }
    QMetaObject::invokeMethod(this, &LinuxCalendarStore::runWaiting, Qt::QueuedConnection);
}

void LinuxCalendarStore::refuse()
{
    const std::lock_guard lock(m_mutex);
    m_isRefused = true;
    m_settled.notify_all();
    QMetaObject::invokeMethod(this, &LinuxCalendarStore::runWaiting, Qt::QueuedConnection);
}

void LinuxCalendarStore::runWaiting()
{
    m_isChoosing = false;
    const auto waiting = std::exchange(m_whenSettled, {});
    for (const auto& task : waiting)
        task();
}

} // namespace nimbarrow
