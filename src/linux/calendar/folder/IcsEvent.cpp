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

/// A rule with a last day and a number ends with what comes first. The library refuses those, so it reads
/// them in two.
icalrecurrencetype ruleOf(const QByteArray& text)
{
    const auto without = [&text](const char* name) {
        auto parts = text.split(';');
        parts.removeIf([name](const QByteArray& part) { return part.trimmed().toUpper().startsWith(name); });
        return icalrecurrencetype_from_string(parts.join(';').constData());
    };
    auto rule = without("UNTIL=");
    if (rule.count == 0)
        return icalrecurrencetype_from_string(text.constData());
    rule.until = without("COUNT=").until;
    return rule;
}

/// The rules of a component, of which the library keeps only those that it can read.
std::vector<icalrecurrencetype> rulesOf(const QByteArray& component)
{
    std::vector<icalrecurrencetype> rules;
    for (auto at = component.indexOf("\r\nRRULE"); at >= 0 && rules.size() < mostRules;
         at = component.indexOf("\r\nRRULE", at + 1)) {
        const auto end = component.indexOf("\r\n", at + 2);
        const auto colon = component.indexOf(':', at);
        if (colon < 0 || colon >= end)
            continue;
        const auto rule = ruleOf(component.mid(colon + 1, end - colon - 1).trimmed());
        if (rule.freq != ICAL_NO_RECURRENCE)
            rules.push_back(rule);
    }
    return rules;
}

IcsEvent::Span spanOf(const icaldatetimeperiodtype& date, const IcsZones::Zone& zone, const IcsTime& start)
{
    IcsEvent::Span span { start, {}, {} };
    if (!icaltime_is_null_time(date.period.end))
        span.end = IcsTime::of(date.period.end, zone);
    else if (!icaldurationtype_is_null_duration(date.period.duration))
        span.length = lengthOf(date.period.duration);
    return span;
}

} // namespace

std::optional<IcsEvent> IcsEvent::parse(
    const QByteArray& text, const QSet<QString>& ownAddresses, const IcsZones& zones)
{
    const IcalComponent component(icalcomponent_new_from_string(text.constData()));
    if (!component || icalcomponent_isa(component.get()) != ICAL_VEVENT_COMPONENT)
        return {};
    IcsEvent event;
    std::optional<IcsTime> start;
    for (auto* property = icalcomponent_get_first_property(component.get(), ICAL_ANY_PROPERTY); property;
         property = icalcomponent_get_next_property(component.get(), ICAL_ANY_PROPERTY)) {
        const auto timeOf = [&](const icaltimetype& time) { return IcsTime::of(time, zones.of(property)); };
        switch (icalproperty_isa(property)) {
        case ICAL_UID_PROPERTY: event.uid = QString::fromUtf8(icalproperty_get_uid(property)); break;
        case ICAL_SEQUENCE_PROPERTY: event.sequence = icalproperty_get_sequence(property); break;
        case ICAL_DTSTART_PROPERTY: start = timeOf(icalproperty_get_dtstart(property)); break;
        case ICAL_DTEND_PROPERTY: event.span.end = timeOf(icalproperty_get_dtend(property)); break;
        case ICAL_DURATION_PROPERTY: event.span.length = lengthOf(icalproperty_get_duration(property)); break;
        case ICAL_RECURRENCEID_PROPERTY: {
            event.recurrenceId = timeOf(icalproperty_get_recurrenceid(property));
            auto* const range = icalproperty_get_first_parameter(property, ICAL_RANGE_PARAMETER);
            event.isOnward = range && icalparameter_get_range(range) == ICAL_RANGE_THISANDFUTURE;
            break;
        }
        case ICAL_RDATE_PROPERTY: {
            const auto date = icalproperty_get_rdate(property);
            const bool isPeriod = icaltime_is_null_time(date.time);
            const auto time = timeOf(isPeriod ? date.period.start : date.time);
            if (time && event.added.size() < mostDates) {
                event.added
                    += isPeriod ? spanOf(date, zones.of(property), *time) : IcsEvent::Span { *time, {}, {} };
            }
            break;
        }
        case ICAL_EXDATE_PROPERTY:
            if (const auto time = timeOf(icalproperty_get_exdate(property));
                time && event.leftOut.size() < mostDates)
                event.leftOut += *time;
            break;
        default: break;
        }
    }
    if (!start)
        return {};
    event.span.start = *start;
    event.rules = rulesOf(text);
    readDetails(component.get(), ownAddresses, event.details);
    return event;
}

} // namespace nimbarrow
