#include "calendar/CalendarModel.h"

#include "platform/CalendarStore.h"
#include "platform/Clock.h"
#include "platform/Opener.h"
#include "platform/Scripting.h"
#include "platform/WorkQueue.h"
#include "preferences/L10n.h"

#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(logCalendar, "ua.tessak.Nimbarrow.calendar")

constexpr auto storeChangeDelay = 1s;
constexpr qint64 newEventLength = 3600; // s
constexpr qint64 secondsOfADay = 86'400;

CalendarAccess accessOf(CalendarStore::Authorization authorization)
{
    switch (authorization) {
    case CalendarStore::Authorization::NotDetermined: return CalendarAccess::NotDetermined;
    case CalendarStore::Authorization::FullAccess: return CalendarAccess::Granted;
    // Who may only write cannot show anything.
    case CalendarStore::Authorization::WriteOnly:
    case CalendarStore::Authorization::Restricted:
    case CalendarStore::Authorization::Denied: break;
    }
    return CalendarAccess::Denied;
}

bool isWanted(const CalendarEvent& event)
{
    if (event.status == CalendarEvent::Status::Cancelled)
        return false;
    const auto user = std::ranges::find(event.attendees, true, &CalendarEvent::Attendee::isCurrentUser);
    return user == event.attendees.end() || user->participation != CalendarEvent::Participation::Declined;
}

QList<DayEvent> dayOf(const QList<CalendarEvent>& events)
{
    QList<DayEvent> day;
    for (const auto& event : events) {
        if (isWanted(event))
            day << DayEvent::make(event);
    }
    std::ranges::stable_sort(day, DayEvent::isBefore);
    return day;
}

// The day is set to 1 first: today's number may not exist in the other month.
QString dayViewScript(const QDate& day)
{
    const auto valid = day.isValid();
    return u"tell application \"Calendar\"\n    set d to current date\n    set time of d to 0\n"
           "    set day of d to 1\n    set year of d to %1\n    set month of d to %2\n    set day of d to "
           "%3\n"
           "    switch view to day view\n    view calendar at d\n    activate\nend tell"_s
               .arg(valid ? day.year() : 1970)
               .arg(valid ? day.month() : 1)
               .arg(valid ? day.day() : 1);
}

} // namespace

CalendarModel::CalendarModel(CalendarStore& store, Opener& opener, Scripting& scripting, const Clock& clock,
    Scheduler& scheduler, WorkQueues& queues, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_opener(opener)
    , m_scripting(scripting)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_access(accessOf(store.authorization()))
    , m_dayStart(startOfToday())
    , m_queue(queues.serial(u"ua.tessak.Nimbarrow.calendar"_s))
{
}

CalendarModel::~CalendarModel() = default;

QDateTime CalendarModel::startOfToday() const
{
    return m_clock.wallTime().toLocalTime().date().startOfDay();
}

void CalendarModel::start()
{
    if (m_started)
        return;
    m_started = true;
    connect(&m_store, &CalendarStore::changed, this, &CalendarModel::scheduleRefresh);
    // At once: yesterday is not to stand there after midnight.
    connect(&m_store, &CalendarStore::dayChanged, this, &CalendarModel::refresh);
    refresh();
}

void CalendarModel::stop()
{
    m_store.disconnect(this);
    m_pendingRefresh.cancel();
    m_started = false;
    publish(m_dayStart, {});
}

void CalendarModel::scheduleRefresh()
{
    m_pendingRefresh = m_scheduler.after(storeChangeDelay, [this] { refresh(); });
}

void CalendarModel::refresh()
{
    if (!m_started)
        return;
    setAccess(accessOf(m_store.authorization()));
    if (m_access != CalendarAccess::Granted)
        return;
    const auto start = startOfToday();
    auto end = start.date().addDays(1).startOfDay();
    if (!end.isValid())
        end = start.addSecs(secondsOfADay);
    const auto events = std::make_shared<std::optional<QList<DayEvent>>>();
    m_queue->run(
        [&store = m_store, start, end, events] {
            if (const auto fetched = store.events(start, end))
                *events = dayOf(*fetched);
        },
        this,
        [this, start, events] {
            // A store that does not answer has not said that the day is free; but it is another day.
            if (m_started)
                publish(start, events->value_or(m_events));
        });
}

void CalendarModel::setAccess(CalendarAccess access)
{
    if (access == m_access)
        return;
    m_access = access;
    Q_EMIT accessChanged();
}

void CalendarModel::publish(const QDateTime& dayStart, const QList<DayEvent>& events)
{
    if (dayStart != m_dayStart) {
        m_dayStart = dayStart;
        Q_EMIT dayStartChanged();
    }
    if (events != m_events) {
        m_events = events;
        Q_EMIT eventsChanged();
    }
}

void CalendarModel::requestAccess(std::function<void()> answered)
{
    m_store.requestFullAccess([self = QPointer(this), answered = std::move(answered)](bool granted) {
        if (self) {
            self->setAccess(granted ? CalendarAccess::Granted : CalendarAccess::Denied);
            if (granted)
                self->refresh();
        }
        if (answered)
            answered();
    });
}

void CalendarModel::open(const DayEvent& event)
{
    if (!event.isRecurring)
        return openById(event.id);
    // The link of a series leads to its first occurrence.
    const auto result = std::make_shared<ScriptResult>();
    m_queue->run(
        [&scripting = m_scripting, result, script = dayViewScript(event.start.toLocalTime().date())] {
            *result = scripting.run(script);
        },
        this,
        [this, result, id = event.id] {
            if (!result->error)
                return;
            qCCritical(
                logCalendar, "Calendar AppleScript failed: %ls", qUtf16Printable(result->error->description));
            openById(id);
        });
}

void CalendarModel::openById(const QString& id)
{
    if (const auto link = DayEvent::calendarUrl(id))
        m_opener.open(*link);
}

void CalendarModel::createEvent(const QDateTime& start)
{
    if (m_access != CalendarAccess::Granted)
        return;
    m_store.create(L10n::text(L10n::Key::NewEvent), start, start.addSecs(newEventLength),
        [self = QPointer(this)](const CalendarStore::Created& created) {
            if (created.error == CalendarStore::CreateError::NoDefaultCalendar)
                qCCritical(logCalendar, "No default calendar for new events");
            else if (created.error)
                qCCritical(
                    logCalendar, "Creating an event failed: %ls", qUtf16Printable(created.errorDescription));
            else if (self && !created.identifier.isEmpty())
                self->openById(created.identifier);
        });
}

} // namespace nimbarrow
