#include "linux/calendar/server/EdsCalendar.h"

#include "linux/calendar/EventIdentifier.h"
#include "linux/calendar/folder/EventDetails.h"

#include <QHash>
#include <QLoggingCategory>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(eds, "ua.tessak.Nimbarrow.calendar.eds")

// To wait until the server has everything ready would take its whole time-out for a local calendar.
constexpr auto withoutWaiting = static_cast<guint32>(-1);

ICalTimezone* localZone()
{
    auto* const zone = i_cal_timezone_get_builtin_timezone(QTimeZone::systemTimeZoneId().constData());
    return zone ? zone : i_cal_timezone_get_utc_timezone();
}

QDateTime momentOf(ICalTime* time)
{
    if (i_cal_time_is_date(time)) {
        return QDate(i_cal_time_get_year(time), i_cal_time_get_month(time), i_cal_time_get_day(time))
            .startOfDay();
    }
    auto* const zone = i_cal_time_get_timezone(time);
    return QDateTime::fromSecsSinceEpoch(i_cal_time_as_timet_with_zone(time, zone ? zone : localZone()));
}

QString recurrenceOf(ICalComponent* component, ICalTime* start)
{
    const Reference<ICalTime> id(i_cal_component_get_recurrenceid(component));
    auto* const time = id && !i_cal_time_is_null_time(id.get()) ? id.get() : start;
    return taken(i_cal_time_as_ical_string(time));
}

struct Collected {
    const QDateTime& start;
    const QDateTime& end;
    const QSet<QString>& ownAddresses;
    const QString source;
    const std::optional<QColor> color;
    const QString name;
    QList<CalendarEvent> events;
    /// The server's identifier of each.
    QList<QByteArray> uids;
};

/// Of one occurrence of a series.
bool isChange(ICalComponent* component)
{
    const Reference<ICalProperty> recurrenceId(
        i_cal_component_get_first_property(component, I_CAL_RECURRENCEID_PROPERTY));
    return recurrenceId != nullptr;
}

gboolean collect(
    ICalComponent* component, ICalTime* start, ICalTime* end, gpointer data, GCancellable*, GError**)
{
    auto& collected = *static_cast<Collected*>(data);
    CalendarEvent event;
    event.start = momentOf(start);
    event.end = momentOf(end);
    event.isAllDay = i_cal_time_is_date(start);
    if (!event.start.isValid() || !event.end.isValid())
        return TRUE;
    const bool overlaps = event.start < collected.end
        && (event.end > collected.start || (event.end == event.start && event.start >= collected.start));
    if (!overlaps)
        return TRUE;

    readDetails(static_cast<icalcomponent*>(i_cal_object_get_native(I_CAL_OBJECT(component))),
        collected.ownAddresses, event);
    // The server gives every occurrence an identifier; only one that was changed stands without the rule.
    event.isDetached = isChange(component) && !event.hasRecurrenceRules;
    event.color = collected.color;
    event.calendar = collected.name;
    const bool isOneOfMany = event.hasRecurrenceRules || event.isDetached;
    event.identifier = EventIdentifier { EventIdentifier::Kind::DataServer, collected.source,
        QString::fromUtf8(i_cal_component_get_uid(component)),
        isOneOfMany ? recurrenceOf(component, start) : QString() }
                           .text();
    collected.events += event;
    collected.uids += i_cal_component_get_uid(component);
    return TRUE;
}

} // namespace

EdsCalendar::EdsCalendar(ESource* source, ECalClient* client, std::function<void()> changed)
    : m_source(referenceTo(source))
    , m_client(client)
    , m_changed(std::move(changed))
{
}

EdsCalendar::~EdsCalendar()
{
    if (m_view)
        g_signal_handlers_disconnect_by_data(m_view.get(), this);
    g_signal_handlers_disconnect_by_data(m_client.get(), this);
}

std::unique_ptr<EdsCalendar> EdsCalendar::connect(
    ESource* source, const std::function<void()>& changed, EdsPatience& patience, Failure& failure)
{
    auto* const client = e_cal_client_connect_sync(
        source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, withoutWaiting, patience.nextCall(), failure.out());
    if (!client)
        return {};
    std::unique_ptr<EdsCalendar> calendar(new EdsCalendar(source, E_CAL_CLIENT(client), changed));
    calendar->watch(patience);
    Failure unknown;
    gchar* address = nullptr;
    if (e_client_get_backend_property_sync(
            client, E_CAL_BACKEND_PROPERTY_CAL_EMAIL_ADDRESS, &address, patience.nextCall(), unknown.out()))
        calendar->m_ownAddress = mailAddress(taken(address));
    return calendar;
}

void EdsCalendar::watch(EdsPatience& patience)
{
    g_signal_connect(m_client.get(), "backend-died", G_CALLBACK(+[](EClient*, EdsCalendar* self) {
        self->m_isDead = true;
        self->tellChanged();
    }),
        this);
    Failure failure;
    ECalClientView* view = nullptr;
    if (!e_cal_client_get_view_sync(m_client.get(), "#t", &view, patience.nextCall(), failure.out())) {
        qCWarning(eds, "A calendar cannot be watched: %ls", qUtf16Printable(failure.text()));
        return;
    }
    m_view.reset(view);
    const auto changed = +[](ECalClientView*, gpointer, EdsCalendar* self) { self->tellChanged(); };
    for (const auto* const signal : { "objects-added", "objects-modified", "objects-removed" })
        g_signal_connect(view, signal, G_CALLBACK(changed), this);
    // Only what changes from now on, and of that nothing but which event it is.
    e_cal_client_view_set_flags(view, E_CAL_CLIENT_VIEW_FLAGS_NONE, failure.out());
    GSList uid { const_cast<char*>("UID"), nullptr };
    e_cal_client_view_set_fields_of_interest(view, &uid, failure.out());
    e_cal_client_view_start(view, failure.out());
    if (failure.isSet())
        qCWarning(eds, "A calendar cannot be watched: %ls", qUtf16Printable(failure.text()));
}

bool EdsCalendar::addEvents(const QDateTime& start, const QDateTime& end, QSet<QString> ownAddresses,
    EdsPatience& patience, QList<CalendarEvent>& events)
{
    if (!m_ownAddress.isEmpty())
        ownAddresses += m_ownAddress;
    auto* const selectable = static_cast<ESourceSelectable*>(
        e_source_get_extension(m_source.get(), E_SOURCE_EXTENSION_CALENDAR));
    const QColor color(taken(e_source_selectable_dup_color(selectable)));
    Collected collected { start, end, ownAddresses, QString::fromUtf8(e_source_get_uid(m_source.get())),
        color.isValid() ? std::optional(color) : std::nullopt,
        taken(e_source_dup_display_name(m_source.get())), {}, {} };

    const auto endedBefore = patience.endedCalls();
    e_cal_client_set_default_timezone(m_client.get(), localZone());
    // Some editions of the library take the clock on the wall for UTC where they cut the time out, so they
    // are asked for a day more on either side. No clock is further away.
    const auto from = start.addDays(-1);
    const auto to = end.addDays(1);
    e_cal_client_generate_instances_sync(m_client.get(), from.toSecsSinceEpoch(), to.toSecsSinceEpoch(),
        patience.nextCall(), collect, &collected);
    // That tells of no error. And the server's index of days learns of an occurrence that was moved to
    // another one only when it reads the calendar anew, so each series with changes is asked for by itself.
    Failure failure;
    GSList* list = nullptr;
    if (!e_cal_client_get_object_list_sync(
            m_client.get(), "(has-recurrences?)", &list, patience.nextCall(), failure.out())) {
        qCWarning(eds, "A calendar does not answer: %ls", qUtf16Printable(failure.text()));
        return false;
    }
    const auto changes = changesOfSeries(list, patience);
    for (qsizetype i = 0; i < collected.events.size(); ++i) {
        if (!changes.contains(collected.uids[i]))
            events += collected.events[i];
    }
    collected.events.clear();
    collected.uids.clear();
    for (auto* item = list; item; item = item->next) {
        auto* const component = static_cast<ICalComponent*>(item->data);
        if (changes.contains(i_cal_component_get_uid(component)) && !isChange(component)) {
            e_cal_client_generate_instances_for_object_sync(m_client.get(), component,
                from.toSecsSinceEpoch(), to.toSecsSinceEpoch(), patience.nextCall(), collect, &collected);
        }
    }
    e_util_free_nullable_object_slist(list);
    // A changed occurrence is applied only where it is found in the same time; one that was moved to another
    // day still stands on its old one.
    for (qsizetype i = 0; i < collected.events.size(); ++i) {
        const auto& event = collected.events[i];
        if (!event.hasRecurrenceRules || !changes[collected.uids[i]].contains(event.start.toSecsSinceEpoch()))
            events += event;
    }
    // A call that has come to no end has told of fewer events than there are, or of none.
    if (patience.endedCalls() != endedBefore) {
        qCWarning(eds, "A calendar does not answer in time");
        return false;
    }
    return true;
}

QHash<QByteArray, QSet<qint64>> EdsCalendar::changesOfSeries(GSList* components, EdsPatience& patience)
{
    QSet<QByteArray> series;
    for (auto* item = components; item; item = item->next) {
        if (auto* const component = static_cast<ICalComponent*>(item->data); !isChange(component))
            series += i_cal_component_get_uid(component);
    }
    QHash<QByteArray, QSet<qint64>> changes;
    for (auto* item = components; item; item = item->next) {
        auto* const component = static_cast<ICalComponent*>(item->data);
        const QByteArray uid(i_cal_component_get_uid(component));
        const Reference<ICalProperty> property(
            i_cal_component_get_first_property(component, I_CAL_RECURRENCEID_PROPERTY));
        // One that stands alone is nobody's change, as an invitation to it.
        if (!property || !series.contains(uid))
            continue;
        const Reference<ICalTime> time(i_cal_property_get_recurrenceid(property.get()));
        const Reference<ICalParameter> zoneName(
            i_cal_property_get_first_parameter(property.get(), I_CAL_TZID_PARAMETER));
        ICalTimezone* zone = nullptr;
        Failure failure;
        // The zone stays the client's.
        if (zoneName
            && e_cal_client_get_timezone_sync(m_client.get(), i_cal_parameter_get_tzid(zoneName.get()), &zone,
                patience.nextCall(), failure.out())
            && zone)
            i_cal_time_set_timezone(time.get(), zone);
        changes[uid] += momentOf(time.get()).toSecsSinceEpoch();
    }
    return changes;
}

QString EdsCalendar::create(const QString& title, const QDateTime& start, const QDateTime& end,
    EdsPatience& patience, Failure& failure)
{
    auto* const zone = localZone();
    // The server knows no zone that it was not given.
    if (!e_cal_client_add_timezone_sync(m_client.get(), zone, patience.nextCall(), failure.out()))
        return {};
    const Reference<ICalComponent> component(i_cal_component_new_vevent());
    i_cal_component_set_summary(component.get(), title.toUtf8().constData());
    const auto wall = [zone](const QDateTime& moment) {
        Reference<ICalTime> time(i_cal_time_new_from_timet_with_zone(moment.toSecsSinceEpoch(), FALSE, zone));
        // It is what the clock shows there, but says so only when told.
        i_cal_time_set_timezone(time.get(), zone);
        return time;
    };
    i_cal_component_set_dtstart(component.get(), wall(start).get());
    i_cal_component_set_dtend(component.get(), wall(end).get());
    gchar* uid = nullptr;
    if (!e_cal_client_create_object_sync(m_client.get(), component.get(), E_CAL_OPERATION_FLAG_NONE, &uid,
            patience.nextCall(), failure.out()))
        return {};
    return taken(uid);
}

} // namespace nimbarrow
