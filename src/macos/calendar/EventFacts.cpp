#include "macos/calendar/EventFacts.h"

#include <algorithm>

namespace nimbarrow {

namespace {

CalendarEvent::Status statusOf(int status)
{
    switch (status) {
    case 1: return CalendarEvent::Status::Confirmed;
    case 2: return CalendarEvent::Status::Tentative;
    case 3: return CalendarEvent::Status::Cancelled;
    default: return CalendarEvent::Status::None;
    }
}

CalendarEvent::Participation participationOf(int status)
{
    switch (status) {
    case 1: return CalendarEvent::Participation::Pending;
    // Completed and in process: who works on it has accepted it.
    case 2:
    case 6:
    case 7: return CalendarEvent::Participation::Accepted;
    case 3: return CalendarEvent::Participation::Declined;
    case 4: return CalendarEvent::Participation::Tentative;
    default: return CalendarEvent::Participation::Unknown;
    }
}

QColor colorOf(const EventFacts::Color& color)
{
    const auto part = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(part(color.red), part(color.green), part(color.blue));
}

/// The midnight after the last second of a day; a midnight itself stays.
QDateTime nextMidnight(const QDateTime& moment)
{
    const auto day = moment.date();
    return moment == day.startOfDay() ? moment : day.addDays(1).startOfDay();
}

} // namespace

std::optional<CalendarEvent> EventFacts::event() const
{
    if (!start.isValid() || !end.isValid())
        return {};
    CalendarEvent event;
    event.identifier = identifier;
    event.title = title;
    event.start = isAllDay ? start.date().startOfDay() : start;
    event.end = isAllDay ? nextMidnight(end) : end;
    event.isAllDay = isAllDay;
    if (color)
        event.color = colorOf(*color);
    event.location = location;
    event.url = url;
    event.notes = notes;
    event.status = statusOf(status);
    for (const auto& participant : participants)
        event.attendees << CalendarEvent::Attendee { participant.isCurrentUser,
            participationOf(participant.status) };
    event.hasRecurrenceRules = hasRecurrenceRules;
    event.isDetached = isDetached;
    return event;
}

CalendarStore::Authorization calendarAuthorization(int status)
{
    switch (status) {
    case 0: return CalendarStore::Authorization::NotDetermined;
    case 1: return CalendarStore::Authorization::Restricted;
    case 3: return CalendarStore::Authorization::FullAccess;
    case 4: return CalendarStore::Authorization::WriteOnly;
    default: return CalendarStore::Authorization::Denied;
    }
}

} // namespace nimbarrow
