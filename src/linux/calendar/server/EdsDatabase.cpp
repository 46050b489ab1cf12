#include "linux/calendar/server/EdsDatabase.h"

#include "linux/calendar/EventIdentifier.h"
#include "linux/calendar/folder/EventDetails.h"
#include "linux/calendar/server/EdsCalendar.h"

#include <QLoggingCategory>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(edsDatabase, "ua.tessak.Nimbarrow.calendar.eds")

constexpr qsizetype mostReports = 100;

bool isCalendar(ESource* source)
{
    return e_source_has_extension(source, E_SOURCE_EXTENSION_CALENDAR);
}

bool isShown(ESource* source)
{
    return e_source_selectable_get_selected(
        static_cast<ESourceSelectable*>(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR)));
}

} // namespace

EdsDatabase::EdsDatabase(std::function<void()> changed)
    : m_changed(std::move(changed))
{
}

EdsDatabase::~EdsDatabase()
{
    m_calendars.clear();
    if (m_registry)
        g_signal_handlers_disconnect_by_data(m_registry.get(), this);
}

void EdsDatabase::sourceChanged(ESourceRegistry* /*registry*/, ESource* source, gpointer self)
{
    // Mail accounts too: who the user is decides which invitations are declined.
    if (isCalendar(source) || e_source_has_extension(source, E_SOURCE_EXTENSION_MAIL_IDENTITY))
        static_cast<EdsDatabase*>(self)->m_changed();
}

bool EdsDatabase::connect(EdsPatience& patience)
{
    if (m_registry)
        return true;
    Failure failure;
    // GLib would end the program with its bus. It forgets what it was told with the last reference.
    m_bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, patience.nextCall(), failure.out()));
    if (m_bus)
        g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    m_registry.reset(e_source_registry_new_sync(patience.nextCall(), failure.out()));
    if (!m_registry) {
        m_failure = failure.text();
        report("The data server does not answer: "_L1);
        return false;
    }
    for (const auto* const signal :
        { "source-added", "source-removed", "source-changed", "source-enabled", "source-disabled" })
        g_signal_connect(m_registry.get(), signal, G_CALLBACK(sourceChanged), this);
    return true;
}

std::vector<EdsDatabase::Source> EdsDatabase::sources(const char* extension) const
{
    std::vector<Source> result;
    auto* const list = e_source_registry_list_sources(m_registry.get(), extension);
    for (auto* item = list; item; item = item->next)
        result.emplace_back(static_cast<ESource*>(item->data));
    g_list_free(list);
    return result;
}

std::vector<EdsDatabase::Source> EdsDatabase::shownCalendars() const
{
    auto calendars = sources(E_SOURCE_EXTENSION_CALENDAR);
    std::erase_if(calendars, [this](const Source& source) {
        return !e_source_registry_check_enabled(m_registry.get(), source.get()) || !isShown(source.get());
    });
    return calendars;
}

QSet<QString> EdsDatabase::ownAddresses() const
{
    QSet<QString> addresses;
    const auto add = [&addresses](const QString& text) {
        if (const auto address = mailAddress(text); address.contains(u'@'))
            addresses += address;
    };
    for (const auto& source : sources(E_SOURCE_EXTENSION_MAIL_IDENTITY)) {
        auto* const identity = static_cast<ESourceMailIdentity*>(
            e_source_get_extension(source.get(), E_SOURCE_EXTENSION_MAIL_IDENTITY));
        add(taken(e_source_mail_identity_dup_address(identity)));
        if (auto* const aliases = e_source_mail_identity_get_aliases_as_hash_table(identity)) {
            auto* const keys = g_hash_table_get_keys(aliases);
            for (auto* key = keys; key; key = key->next)
                add(QString::fromUtf8(static_cast<const char*>(key->data)));
            g_list_free(keys);
            g_hash_table_destroy(aliases);
        }
    }
    // An online account without mail still is somebody.
    for (const auto& source : sources(E_SOURCE_EXTENSION_COLLECTION)) {
        add(taken(e_source_collection_dup_identity(static_cast<ESourceCollection*>(
            e_source_get_extension(source.get(), E_SOURCE_EXTENSION_COLLECTION)))));
    }
    return addresses;
}

void EdsDatabase::report(QLatin1StringView what)
{
    // The same every minute helps nobody.
    const auto line = what + m_failure;
    if (m_reported.contains(line) || m_reported.size() >= mostReports)
        return;
    m_reported += line;
    qCWarning(edsDatabase, "%ls", qUtf16Printable(line));
}

EdsCalendar* EdsDatabase::calendar(ESource* source, EdsPatience& patience)
{
    const auto known = std::find_if(m_calendars.begin(), m_calendars.end(),
        [source](const auto& calendar) { return e_source_equal(calendar->source(), source); });
    if (known != m_calendars.end()) {
        if (!(*known)->isDead())
            return known->get();
        m_calendars.erase(known);
    }
    Failure failure;
    auto calendar = EdsCalendar::connect(source, m_changed, patience, failure);
    if (!calendar) {
        m_failure = failure.text();
        report("A calendar cannot be opened: "_L1);
        return nullptr;
    }
    return m_calendars.emplace_back(std::move(calendar)).get();
}

std::optional<QList<CalendarEvent>> EdsDatabase::events(
    const QDateTime& start, const QDateTime& end, EdsPatience& patience)
{
    if (!connect(patience))
        return {};
    // There always are some. A registry that has lost its server has none.
    if (sources(nullptr).empty())
        return {};
    const auto addresses = ownAddresses();
    const auto shown = shownCalendars();
    std::erase_if(m_calendars, [&shown](const auto& calendar) {
        return std::none_of(shown.begin(), shown.end(),
            [&](const Source& source) { return e_source_equal(calendar->source(), source.get()); });
    });
    if (start != m_toldStart || end != m_toldEnd)
        m_told.clear();
    m_toldStart = start;
    m_toldEnd = end;
    QList<CalendarEvent> all;
    bool anyAnswers = shown.empty();
    for (const auto& source : shown) {
        const auto id = QString::fromUtf8(e_source_get_uid(source.get()));
        auto* const opened = calendar(source.get(), patience);
        QList<CalendarEvent> events;
        if (opened && opened->addEvents(start, end, addresses, patience, events)) {
            anyAnswers = true;
            m_told.insert(id, events);
        }
        all += m_told.value(id);
    }
    if (!anyAnswers)
        return {};
    return all;
}

EdsCalendar* EdsDatabase::calendarForNewEvents(EdsPatience& patience)
{
    std::vector<Source> candidates;
    if (auto* const usual = e_source_registry_ref_default_calendar(m_registry.get()))
        candidates.emplace_back(usual);
    for (auto& source : shownCalendars())
        candidates.push_back(std::move(source));
    for (const auto& source : candidates) {
        if (!e_source_registry_check_enabled(m_registry.get(), source.get()))
            continue;
        auto* const opened = calendar(source.get(), patience);
        if (opened && !opened->isReadOnly())
            return opened;
    }
    return nullptr;
}

Calendars::Created EdsDatabase::create(
    const QString& title, const QDateTime& start, const QDateTime& end, EdsPatience& patience)
{
    using Error = Calendars::CreateError;
    // Nothing has been asked for yet, so the event may be made elsewhere.
    if (!connect(patience))
        return { Error::NoDefaultCalendar, m_failure, {} };
    auto* const target = calendarForNewEvents(patience);
    if (!target)
        return { Error::NoDefaultCalendar, {}, {} };
    Failure failure;
    const auto uid = target->create(title, start, end, patience, failure);
    if (failure.isSet())
        return { Error::Failed, failure.text(), {} };
    if (uid.isEmpty())
        return {};
    const auto source = QString::fromUtf8(e_source_get_uid(target->source()));
    return { {}, {}, EventIdentifier { EventIdentifier::Kind::DataServer, source, uid, {} }.text() };
}

} // namespace nimbarrow
