#include "linux/calendar/folder/EventDetails.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr int mostAttendees = 1000;
constexpr int mostConferences = 20;

using Event = CalendarEvent;

Event::Status statusOf(icalproperty_status status)
{
    switch (status) {
    case ICAL_STATUS_CONFIRMED: return Event::Status::Confirmed;
    case ICAL_STATUS_TENTATIVE: return Event::Status::Tentative;
    case ICAL_STATUS_CANCELLED: return Event::Status::Cancelled;
    default: return Event::Status::None;
    }
}

Event::Participation participationOf(icalproperty* attendee)
{
    auto* const answer = icalproperty_get_first_parameter(attendee, ICAL_PARTSTAT_PARAMETER);
    if (!answer)
        return Event::Participation::Pending;
    switch (icalparameter_get_partstat(answer)) {
    case ICAL_PARTSTAT_NEEDSACTION: return Event::Participation::Pending;
    case ICAL_PARTSTAT_ACCEPTED: return Event::Participation::Accepted;
    case ICAL_PARTSTAT_DECLINED: return Event::Participation::Declined;
    case ICAL_PARTSTAT_TENTATIVE: return Event::Participation::Tentative;
    default: return Event::Participation::Unknown;
    }
}

bool isOwn(icalproperty* attendee, const QSet<QString>& ownAddresses)
{
    if (ownAddresses.contains(mailAddress(QString::fromUtf8(icalproperty_get_attendee(attendee)))))
        return true;
    // Some servers name people by paths of theirs and put the address beside.
    auto* const address = icalproperty_get_first_parameter(attendee, ICAL_EMAIL_PARAMETER);
    return address && ownAddresses.contains(mailAddress(QString::fromUtf8(icalparameter_get_email(address))));
}

/// Also a number to call or a room to write in may stand there.
void addConference(const char* address, Event& event)
{
    const QUrl url(QString::fromUtf8(address).trimmed());
    if (url.isValid() && !url.host().isEmpty() && event.conferences.size() < mostConferences)
        event.conferences += url;
}

} // namespace

QString mailAddress(const QString& person)
{
    auto address = person.trimmed().toLower();
    if (address.startsWith("mailto:"_L1))
        address.remove(0, 7);
    return address;
}

void readDetails(icalcomponent* component, const QSet<QString>& ownAddresses, CalendarEvent& event)
{
    for (auto* property = icalcomponent_get_first_property(component, ICAL_ANY_PROPERTY); property;
         property = icalcomponent_get_next_property(component, ICAL_ANY_PROPERTY)) {
        switch (icalproperty_isa(property)) {
        case ICAL_SUMMARY_PROPERTY:
            event.title = QString::fromUtf8(icalproperty_get_summary(property));
            break;
        case ICAL_LOCATION_PROPERTY:
            event.location = QString::fromUtf8(icalproperty_get_location(property));
            break;
        case ICAL_DESCRIPTION_PROPERTY:
            event.notes = QString::fromUtf8(icalproperty_get_description(property));
            break;
        case ICAL_URL_PROPERTY: event.url = QUrl(QString::fromUtf8(icalproperty_get_url(property))); break;
        case ICAL_CONFERENCE_PROPERTY: addConference(icalproperty_get_conference(property), event); break;
        case ICAL_X_PROPERTY: {
            const QByteArrayView name(icalproperty_get_x_name(property));
            if (name == "X-GOOGLE-CONFERENCE" || name == "X-MICROSOFT-SKYPETEAMSMEETINGURL")
                addConference(icalproperty_get_x(property), event);
            break;
        }
        case ICAL_STATUS_PROPERTY: event.status = statusOf(icalproperty_get_status(property)); break;
        case ICAL_ATTENDEE_PROPERTY:
            if (event.attendees.size() < mostAttendees)
                event.attendees += { isOwn(property, ownAddresses), participationOf(property) };
            break;
        case ICAL_RRULE_PROPERTY:
        case ICAL_RDATE_PROPERTY: event.hasRecurrenceRules = true; break;
        default: break;
        }
    }
}

} // namespace nimbarrow
