#include "Fuzz.h"
#include "linux/calendar/folder/IcsCalendar.h"

#include <QTimeZone>

using namespace nimbarrow;

/// A stranger's calendar, of which one day is laid out as the folder's store does.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto start = QDate(2026, 11, 21).startOfDay(QTimeZone::utc());
    const auto end = start.addDays(1);
    const IcsFile::Reading reading { start, end, { QStringLiteral("sam@example.org") } };
    IcsZones zones;
    IcsCalendar calendar(start, end);
    calendar.add(std::make_shared<IcsFile>(IcsFile::parse(
        QByteArrayView(data, static_cast<qsizetype>(size)), QStringLiteral("/any.ics"), reading, zones)));
    for (const auto& event : calendar.events()) {
        fuzz::require(event.start.isValid() && event.end.isValid(), "an event has a beginning and an end");
        fuzz::require(event.start <= event.end, "an event ends after it began");
        fuzz::require(event.start < end && event.end >= start, "an event overlaps the day");
        fuzz::require(!event.identifier.isEmpty(), "an event can be named");
    }
    return 0;
}
