#include "linux/calendar/folder/IcsTime.h"

#include "linux/calendar/folder/IcsZone.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr qint64 daySeconds = 86'400;
constexpr qint64 firstDay = 2'440'588; // the Julian day of 1970-01-01

} // namespace

QDate dateOf(WallTime time)
{
    const auto days = time / daySeconds - (time % daySeconds < 0 ? 1 : 0);
    return QDate::fromJulianDay(days + firstDay);
}

WallTime midnightOf(QDate date)
{
    return date.isValid() ? (date.toJulianDay() - firstDay) * daySeconds : 0;
}

std::optional<IcsTime> IcsTime::of(const icaltimetype& time, std::shared_ptr<const IcsZone> zone)
{
    const QDate date(time.year, time.month, time.day);
    if (!date.isValid() || time.year < 1 || time.year > 9999)
        return {};
    IcsTime result;
    result.wall = midnightOf(date);
    if (time.is_date) {
        result.kind = Kind::Date;
        return result;
    }
    // A leap second is the next one here.
    if (time.hour < 0 || time.hour > 23 || time.minute < 0 || time.minute > 59 || time.second < 0
        || time.second > 60)
        return {};
    result.wall += time.hour * 3600 + time.minute * 60 + time.second;
    if (icaltime_is_utc(time))
        result.kind = Kind::Utc;
    else
        result.zone = std::move(zone);
    return result;
}

qint64 IcsTime::offsetAt(qint64 moment) const
{
    if (kind == Kind::Utc)
        return 0;
    return zone ? zone->offsetAt(moment) : QDateTime::fromSecsSinceEpoch(moment).offsetFromUtc();
}

qint64 IcsTime::moment() const
{
    // The offset a day before and the one a day after; where they differ, a change of the clocks is near.
    const auto before = offsetAt(wall - daySeconds);
    const auto after = offsetAt(wall + daySeconds);
    const auto early = wall - before;
    if (before == after || offsetAt(early) == before)
        return early;
    const auto late = wall - after;
    return offsetAt(late) == after ? late : early;
}

WallTime IcsTime::wallAt(qint64 moment) const
{
    return moment + offsetAt(moment);
}

QString IcsTime::text() const
{
    const auto date = dateOf(wall).toString(u"yyyyMMdd"_s);
    if (kind == Kind::Date)
        return date;
    const auto time = QTime::fromMSecsSinceStartOfDay(int(wall - midnightOf(dateOf(wall))) * 1000);
    return date + u'T' + time.toString(u"HHmmss"_s) + (kind == Kind::Utc ? u"Z"_s : QString());
}

} // namespace nimbarrow
