#include "macos/calendar/MacCalendarStore.h"

#include "macos/calendar/EventFacts.h"
#include "platform/WorkQueue.h"
#include "qt/QtWorkQueues.h"

#include <QCoreApplication>

#include <AppKit/AppKit.h>
#include <EventKit/EventKit.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

std::optional<EventFacts::Color> colorOf(EKCalendar* calendar)
{
    auto* const color = [calendar.color colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
    if (!color)
        return {};
    return EventFacts::Color { color.redComponent, color.greenComponent, color.blueComponent };
}

QList<EventFacts::Participant> participantsOf(EKEvent* event)
{
    QList<EventFacts::Participant> participants;
    for (EKParticipant* attendee in event.attendees)
        participants << EventFacts::Participant { static_cast<bool>(attendee.currentUser),
            static_cast<int>(attendee.participantStatus) };
    return participants;
}

EventFacts factsOf(EKEvent* event)
{
    return { .identifier = QString::fromNSString(event.eventIdentifier),
        .title = QString::fromNSString(event.title),
        .start = event.startDate ? QDateTime::fromNSDate(event.startDate) : QDateTime(),
        .end = event.endDate ? QDateTime::fromNSDate(event.endDate) : QDateTime(),
        .isAllDay = static_cast<bool>(event.allDay),
        .color = colorOf(event.calendar),
        .location = QString::fromNSString(event.location),
        .url = event.URL ? QUrl::fromNSURL(event.URL) : QUrl(),
        .notes = QString::fromNSString(event.notes),
        .status = static_cast<int>(event.status),
        .participants = participantsOf(event),
        .hasRecurrenceRules = static_cast<bool>(event.hasRecurrenceRules),
        .isDetached = static_cast<bool>(event.isDetached) };
}

QString nameOf(NSNotificationName name)
{
    return QString::fromNSString(name);
}

} // namespace

class MacCalendarStore::Database {
public:
    // Changes are told of only while there is a connection. Events of one connection mean nothing to another.
    EKEventStore* connection()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_store)
            m_store = [[EKEventStore alloc] init];
        return m_store;
    }

    Created create(const QString& title, const QDateTime& start, const QDateTime& end)
    {
        auto* const store = connection();
        auto* const calendar = store.defaultCalendarForNewEvents;
        if (!calendar)
            return { CreateError::NoDefaultCalendar, {}, {} };
        auto* const event = [EKEvent eventWithEventStore:store];
        event.title = title.toNSString();
        event.startDate = start.toNSDate();
        event.endDate = end.toNSDate();
        event.calendar = calendar;
        NSError* error = nil;
        if (![store saveEvent:event span:EKSpanThisEvent commit:YES error:&error])
            return { CreateError::Failed, QString::fromNSString(error.localizedDescription), {} };
        return { {}, {}, QString::fromNSString(event.eventIdentifier) };
    }

private:
    std::mutex m_mutex;
    EKEventStore* m_store = nil;
};

MacCalendarStore::MacCalendarStore()
    : m_database(std::make_unique<Database>())
    , m_changed(Observation::Centre::Application, nameOf(EKEventStoreChangedNotification),
          [this] { Q_EMIT changed(); })
    , m_newDays { Observation { Observation::Centre::Application, nameOf(NSCalendarDayChangedNotification),
                      [this] { Q_EMIT dayChanged(); } },
        Observation { Observation::Centre::Application, nameOf(NSSystemTimeZoneDidChangeNotification),
            [this] { Q_EMIT dayChanged(); } },
        Observation { Observation::Centre::Application, nameOf(NSSystemClockDidChangeNotification),
            [this] { Q_EMIT dayChanged(); } } }
    , m_creating(QtWorkQueues().serial(u"ua.tessak.Nimbarrow.events"_s))
{
}

MacCalendarStore::~MacCalendarStore() = default;

CalendarStore::Authorization MacCalendarStore::authorization()
{
    return calendarAuthorization(
        static_cast<int>([EKEventStore authorizationStatusForEntityType:EKEntityTypeEvent]));
}

void MacCalendarStore::requestFullAccess(std::function<void(bool)> answered)
{
    // The answer comes on whatever thread the system has at hand.
    [m_database->connection() requestFullAccessToEventsWithCompletion:^(BOOL granted, NSError* error) {
        Q_UNUSED(error);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [answered, granted] { answered(granted); }, Qt::QueuedConnection);
    }];
}

std::optional<QList<CalendarEvent>> MacCalendarStore::events(const QDateTime& start, const QDateTime& end)
{
    @autoreleasepool {
        if (authorization() != Authorization::FullAccess)
            return {};
        auto* const store = m_database->connection();
        auto* const wanted = [store predicateForEventsWithStartDate:start.toNSDate()
                                                            endDate:end.toNSDate()
                                                          calendars:nil];
        QList<CalendarEvent> events;
        for (EKEvent* event in [store eventsMatchingPredicate:wanted]) {
            if (const auto converted = factsOf(event).event())
                events << *converted;
        }
        return events;
    }
}

void MacCalendarStore::create(const QString& title, const QDateTime& start, const QDateTime& end,
    std::function<void(const Created&)> done)
{
    const auto created = std::make_shared<Created>();
    m_creating->run(
        [this, created, title, start, end] {
            @autoreleasepool {
                *created = m_database->create(title, start, end);
            }
        },
        this, [created, done = std::move(done)] { done(*created); });
}

} // namespace nimbarrow
