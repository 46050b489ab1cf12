#include "linux/calendar/folder/IcsEvent.h"

#include "linux/calendar/folder/EventDetails.h"
#include "linux/calendar/folder/IcalPointers.h"

#include <algorithm>

namespace nimbarrow {

namespace {

constexpr std::size_t mostRules = 8;
constexpr qsizetype mostDates = 10'000;
/// A hundred years; more is no event but a mistake.
constexpr qint64 longestDays = 36'500;

IcsEvent::Length lengthOf(const icaldurationtype& duration)
{
    if (duration.is_neg || icaldurationtype_is_bad_duration(duration))
        return {};
    const auto days = qint64(duration.weeks) * 7 + duration.days;
    const auto seconds = qint64(duration.hours) * 3600 + qint64(duration.minutes) * 60 + duration.seconds;
    return { std::min(days, longestDays), std::min(seconds, longestDays * 86'400) };
}

void append(QList<IcsTime>& times, const std::optional<IcsTime>& time)
{
    if (time && times.size() < mostDates)
        times += *time;
}

} // namespace

std::optional<IcsEvent> IcsEvent::parse(const QByteArray& text, const QSet<QString>& ownAddresses)
{
    const IcalComponent component(icalcomponent_new_from_string(text.constData()));
    if (!component || icalcomponent_isa(component.get()) != ICAL_VEVENT_COMPONENT)
        return {};
    IcsEvent event;
    std::optional<IcsTime> start;
    for (auto* property = icalcomponent_get_first_property(component.get(), ICAL_ANY_PROPERTY); property;
         property = icalcomponent_get_next_property(component.get(), ICAL_ANY_PROPERTY)) {
        switch (icalproperty_isa(property)) {
        case ICAL_UID_PROPERTY: event.uid = QString::fromUtf8(icalproperty_get_uid(property)); break;
        case ICAL_SEQUENCE_PROPERTY: event.sequence = icalproperty_get_sequence(property); break;
        case ICAL_DTSTART_PROPERTY: start = IcsTime::of(icalproperty_get_dtstart(property), property); break;
        case ICAL_DTEND_PROPERTY: event.end = IcsTime::of(icalproperty_get_dtend(property), property); break;
        case ICAL_DURATION_PROPERTY: event.length = lengthOf(icalproperty_get_duration(property)); break;
        case ICAL_RECURRENCEID_PROPERTY:
            event.recurrenceId = IcsTime::of(icalproperty_get_recurrenceid(property), property);
            break;
        case ICAL_RRULE_PROPERTY:
            if (event.rules.size() < mostRules)
                event.rules.push_back(icalproperty_get_rrule(property));
            break;
        case ICAL_RDATE_PROPERTY: {
            const auto date = icalproperty_get_rdate(property);
            // A period begins with its time.
            append(event.added,
                IcsTime::of(icaltime_is_null_time(date.time) ? date.period.start : date.time, property));
            break;
        }
        case ICAL_EXDATE_PROPERTY:
            append(event.leftOut, IcsTime::of(icalproperty_get_exdate(property), property));
            break;
        default: break;
        }
    }
    if (!start)
        return {};
    event.start = *start;
    readDetails(component.get(), ownAddresses, event.details);
    return event;
}

} // namespace nimbarrow
