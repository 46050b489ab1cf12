#include "fuzz/IcsFuzzer.h"

#include "platform/ical/IcsCalendar.h"

namespace nimbarrow {

qsizetype readAnyCalendar(QByteArrayView bytes)
{
    const auto start = QDate(2026, 11, 21).startOfDay();
    const auto end = QDate(2026, 11, 22).startOfDay();
    IcsCalendar calendar(start, end, { QStringLiteral("sam@example.org") });
    calendar.add(bytes, QStringLiteral("/any.ics"));
    const auto events = calendar.events();
    for (const auto& event : events) {
        if (!event.start.isValid() || !event.end.isValid() || event.start > event.end || event.start >= end
            || event.end < start)
            qFatal("An event that does not overlap the day");
    }
    return events.size();
}

} // namespace nimbarrow

#ifdef NIMBARROW_LIBFUZZER
// NOLINTNEXTLINE: the name is the fuzzer's
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    nimbarrow::readAnyCalendar(QByteArrayView(data, qsizetype(size)));
    return 0;
}
#endif
