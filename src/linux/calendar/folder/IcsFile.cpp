#include "linux/calendar/folder/IcsFile.h"

#include "linux/calendar/folder/EventDetails.h"
#include "linux/calendar/folder/IcsScanner.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr qsizetype mostInFile = 20'000;

/// The date in the first property of that name, as a number like 20261121; 0 where there is none.
int roughDate(const QByteArray& component, const QByteArray& name)
{
    const auto at = component.indexOf("\r\n" + name);
    if (at < 0)
        return 0;
    const auto end = component.indexOf("\r\n", at + 2);
    const auto line = QByteArrayView(component).sliced(at, end - at);
    const auto colon = line.lastIndexOf(':');
    return colon < 0 ? 0
                     : line.sliced(colon + 1).first(std::min<qsizetype>(8, line.size() - colon - 1)).toInt();
}

int asNumber(QDate date)
{
    return date.year() * 10'000 + date.month() * 100 + date.day();
}

/// Most events of a calendar are over, and reading them costs far more than seeing that.
bool mayMatter(const QByteArray& component, const IcsFile::Reading& reading)
{
    for (const auto* const name : { "\r\nRRULE", "\r\nRDATE", "\r\nRECURRENCE-ID", "\r\nDURATION" }) {
        if (component.contains(name))
            return true;
    }
    const int start = roughDate(component, "DTSTART");
    const int end = roughDate(component, "DTEND");
    if (start == 0)
        return true;
    // Two days more, for the zones and for whole days.
    return start <= asNumber(reading.end.date().addDays(2))
        && std::max(start, end) >= asNumber(reading.start.date().addDays(-2));
}

} // namespace

IcsFile IcsFile::parse(QByteArrayView text, const QString& path, const Reading& reading, IcsZones& zones)
{
    // Set once for the whole process, and never to anything else.
    icalerror_set_errors_are_fatal(false);
    IcsFile file;
    auto ownAddresses = reading.ownAddresses;
    IcsScanner scanner;
    scanner.property = [&](const QByteArray& property, const QByteArray& value) {
        if (property == "X-APPLE-CALENDAR-COLOR" || property == "COLOR") {
            if (const auto color = parseColor(value))
                file.color = color;
        } else if (property == "X-OWNER" || property == "X-WR-CALNAME") {
            const auto name = QString::fromUtf8(value);
            if (property == "X-WR-CALNAME")
                file.name = name;
            // Some services name a person's first calendar by the address.
            if (const auto address = mailAddress(name); address.contains(u'@'))
                ownAddresses += address;
        }
    };
    zones.startFile();
    scanner.zone = [&zones](const QByteArray& component) { zones.add(component); };
    // Zones and owners may stand behind the events that they belong to.
    QByteArrayList components;
    scanner.event = [&](const QByteArray& component) {
        if (components.size() < mostInFile && mayMatter(component, reading))
            components += component;
    };
    scanner.scan(text);
    for (const auto& component : components) {
        if (auto event = IcsEvent::parse(component, ownAddresses, zones)) {
            event->path = path;
            file.events.push_back(std::move(*event));
            // Letters take two bytes, and a date that is left out more than it does in the text.
            file.cost += qsizetype(sizeof(IcsEvent)) + 4 * component.size();
        }
    }
    return file;
}

std::optional<QColor> IcsFile::parseColor(const QByteArray& text)
{
    auto name = QString::fromLatin1(text.trimmed().left(64));
    if (name.startsWith(u'#') && name.size() == 9)
        name.truncate(7);
    const auto color = QColor::fromString(name);
    return color.isValid() ? std::optional(color) : std::nullopt;
}

} // namespace nimbarrow
