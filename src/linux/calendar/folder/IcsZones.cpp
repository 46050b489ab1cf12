#include "linux/calendar/folder/IcsZones.h"

#include "linux/calendar/folder/IcalPointers.h"
#include "linux/calendar/folder/IcsRecurrence.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <cctype>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr qsizetype mostZones = 200;
constexpr std::size_t mostChanges = 2000;
constexpr qint64 budgetOfZone = 2'000'000;

constexpr auto zonesFolder = "/usr/share/zoneinfo/"_L1;

/// The names that zones once had, and those that they have now. Not every system has files for the old ones.
QHash<QByteArray, QByteArray> readAliases()
{
    QHash<QByteArray, QByteArray> aliases;
    QFile file(zonesFolder + u"tzdata.zi"_s);
    if (!file.open(QIODevice::ReadOnly))
        return aliases;
    for (const auto& line : file.readAll().split('\n')) {
        if (const auto parts = line.split(' '); parts.size() == 3 && parts[0] == "L")
            aliases.insert(parts[2], parts[1]);
    }
    return aliases;
}

std::optional<QTimeZone> zoneOfId(const QByteArray& id)
{
    // A name becomes the path of a file. Without one, Qt makes up a zone for some names.
    const bool isPlain = std::all_of(id.begin(), id.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || QByteArrayView("/_-+").contains(c);
    });
    if (!isPlain || id.isEmpty() || id.size() > 64 || id.startsWith('/'))
        return {};
    static const auto aliases = readAliases();
    for (const auto& name : { id, aliases.value(id) }) {
        if (name.isEmpty() || !QFileInfo(zonesFolder + QString::fromLatin1(name)).isFile())
            continue;
        if (const QTimeZone zone(name); zone.isValid())
            return zone;
    }
    return {};
}

/// "Europe/Berlin", also at the end of a path; or a Windows name.
std::optional<QTimeZone> zoneOfName(const QString& name)
{
    const auto bytes = name.toUtf8();
    if (auto zone = zoneOfId(bytes))
        return zone;
    const auto parts = name.split(u'/', Qt::SkipEmptyParts);
    for (const qsizetype count : { 3, 2 }) {
        if (parts.size() >= count) {
            if (auto zone = zoneOfId(parts.last(count).join(u'/').toUtf8()))
                return zone;
        }
    }
    return zoneOfId(QTimeZone::windowsIdToDefaultIanaId(bytes));
}

qint64 bounded(int offset)
{
    constexpr int most = 86'400;
    return std::clamp(offset, -most, most);
}

} // namespace

void IcsZones::add(const QByteArray& text)
{
    const IcalComponent zone(icalcomponent_new_from_string(text.constData()));
    auto* const id = zone ? icalcomponent_get_first_property(zone.get(), ICAL_TZID_PROPERTY) : nullptr;
    const auto name = id ? QString::fromUtf8(icalproperty_get_tzid(id)) : QString();
    // The system's zones know more, and cost nothing to read.
    if (name.isEmpty() || systemZone(name) || m_described.size() >= mostZones)
        return;
    if (const auto read = m_read.constFind(text); read != m_read.cend()) {
        m_described.insert(name, *read);
        return;
    }
    if (m_read.size() >= mostZones)
        return;
    std::vector<IcsZone::Change> changes;
    qint64 budget = budgetOfZone;
    for (auto* part = icalcomponent_get_first_component(zone.get(), ICAL_ANY_COMPONENT); part;
         part = icalcomponent_get_next_component(zone.get(), ICAL_ANY_COMPONENT)) {
        auto* const from = icalcomponent_get_first_property(part, ICAL_TZOFFSETFROM_PROPERTY);
        auto* const to = icalcomponent_get_first_property(part, ICAL_TZOFFSETTO_PROPERTY);
        auto* const begin = icalcomponent_get_first_property(part, ICAL_DTSTART_PROPERTY);
        if (!from || !to || !begin)
            continue;
        const auto before = bounded(icalproperty_get_tzoffsetfrom(from));
        const auto after = bounded(icalproperty_get_tzoffsetto(to));
        const auto start = IcsTime::of(icalproperty_get_dtstart(begin));
        if (!start)
            continue;
        const auto add = [&](WallTime wall) {
            if (changes.size() < mostChanges)
                changes.push_back({ wall - before, before, after });
        };
        add(start->wall);
        for (auto* p = icalcomponent_get_first_property(part, ICAL_RDATE_PROPERTY); p;
             p = icalcomponent_get_next_property(part, ICAL_RDATE_PROPERTY)) {
            if (const auto time = IcsTime::of(icalproperty_get_rdate(p).time))
                add(time->wall);
        }
        auto* const rule = icalcomponent_get_first_property(part, ICAL_RRULE_PROPERTY);
        if (!rule)
            continue;
        const auto every = icalproperty_get_rrule(rule);
        // Clocks that change more often than a few times a year are nobody's.
        if (every.freq != ICAL_YEARLY_RECURRENCE)
            continue;
        const auto until = IcsTime::of(every.until);
        const auto last = until ? until->wall + 86'400 : midnightOf(QDate(2200, 1, 1));
        IcsRecurrence(every, *start).visit(start->wall + 1, last, budget, add);
    }
    std::sort(changes.begin(), changes.end(),
        [](const IcsZone::Change& a, const IcsZone::Change& b) { return a.moment < b.moment; });
    if (changes.empty())
        return;
    const auto described = std::make_shared<const IcsZone>(std::move(changes));
    m_read.insert(text, described);
    m_described.insert(name, described);
}

IcsZones::Zone IcsZones::systemZone(const QString& name) const
{
    const auto found = m_system.constFind(name);
    if (found != m_system.cend())
        return *found;
    // Names come from the file: there may be many.
    if (m_system.size() > mostZones)
        m_system.clear();
    const auto zone = zoneOfName(name);
    return *m_system.insert(name, zone ? std::make_shared<const IcsZone>(*zone) : Zone());
}

IcsZones::Zone IcsZones::of(icalproperty* property) const
{
    auto* const id = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    if (!id)
        return {};
    const auto name = QString::fromUtf8(icalparameter_get_tzid(id));
    const auto system = systemZone(name);
    return system ? system : m_described.value(name);
}

} // namespace nimbarrow
