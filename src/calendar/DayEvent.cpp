#include "calendar/DayEvent.h"

#include "calendar/LinkDetector.h"
#include "platform/Calendars.h"
#include "text/DisplayLine.h"

#include <QLocale>
#include <QUuid>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr std::array meetingHosts { "meet.google.com"_L1, "zoom.us"_L1, "teams.microsoft.com"_L1,
    "teams.live.com"_L1 };

// More than fits anywhere.
constexpr qsizetype longestText = 300;
constexpr qsizetype longestName = 60;

constexpr QRgb calendarBlue = qRgb(0, 122, 255);

// A colour of this luminance stands out from black by 4.5 to 1.
constexpr float leastLuminance = 0.175F;

// Between the values of a screen and those of light.
float linear(float value)
{
    return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
}

float encoded(float light)
{
    return light <= 0.0031308F ? light * 12.92F : 1.055F * std::pow(light, 1 / 2.4F) - 0.055F;
}

bool isMeetingHost(const QString& host)
{
    return std::ranges::any_of(meetingHosts, [&host](QLatin1StringView meeting) {
        return host == meeting
            || (host.endsWith(meeting) && host.at(host.size() - meeting.size() - 1) == u'.');
    });
}

} // namespace

DayEvent DayEvent::make(const CalendarEvent& event)
{
    Q_ASSERT(event.start.isValid() && event.end.isValid());
    DayEvent day;
    day.id = event.identifier.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()
                                        : event.identifier;
    // Whoever sends an invitation may write anything into it, and a calendar's name comes from its server.
    day.title = displayLine(event.title, longestText);
    day.calendar = displayLine(event.calendar, longestName);
    day.start = event.start;
    day.end = event.end;
    day.isAllDay = event.isAllDay;
    day.color = event.color && event.color->isValid() ? *event.color : QColor(calendarBlue);
    if (const auto location = displayLine(event.location.trimmed(), longestText); !location.isEmpty())
        day.location = location;
    day.meetingUrl = meetingUrlIn(QList { event.url } + event.conferences, { event.location, event.notes });
    day.isRecurring = event.hasRecurrenceRules || event.isDetached;
    return day;
}

std::optional<QUrl> DayEvent::meetingUrlIn(
    const QList<QUrl>& links, const QList<std::optional<QString>>& texts)
{
    for (const auto& link : links) {
        if (const auto target = linkdetector::unwrapped(link); isMeeting(target))
            return target;
    }
    std::optional<QUrl> meeting;
    for (const auto& text : texts) {
        if (!text)
            continue;
        linkdetector::visit(*text, isMeetingHost, [&meeting](const QUrl& link) {
            if (isMeeting(link))
                meeting = link;
            return meeting.has_value();
        });
        if (meeting)
            break;
    }
    return meeting;
}

bool DayEvent::isMeeting(const QUrl& url)
{
    return isMeetingHost(url.host().toLower());
}

std::optional<QUrl> DayEvent::calendarUrl(const QString& id)
{
    if (!id.isValidUtf16())
        return std::nullopt;
    const auto path = QUrl::toPercentEncoding(id, "!$&'()*+,/:=@");
    return QUrl::fromEncoded("ical://ekevent/" + path, QUrl::StrictMode);
}

bool DayEvent::isBefore(const DayEvent& one, const DayEvent& other)
{
    return one.start != other.start ? one.start < other.start : one.title < other.title;
}

QColor DayEvent::visibleColor() const
{
    std::array<float, 3> light { linear(color.redF()), linear(color.greenF()), linear(color.blueF()) };
    const auto luminance = [&light] { return 0.2126F * light[0] + 0.7152F * light[1] + 0.0722F * light[2]; };
    if (luminance() >= leastLuminance)
        return color;
    // As bright as the same hue can be, and as little white as that leaves to wish for.
    if (const auto peak = std::ranges::max(light); peak > 0) {
        const auto scale = std::min(1 / peak, leastLuminance / luminance());
        std::ranges::transform(light, light.begin(), [scale](float value) { return value * scale; });
    }
    const auto white = std::max(0.0F, (leastLuminance - luminance()) / (1 - luminance()));
    std::ranges::transform(
        light, light.begin(), [white](float value) { return encoded(value + white * (1 - value)); });
    return QColor::fromRgbF(light[0], light[1], light[2]);
}

QString DayEvent::details() const
{
    const QLocale locale;
    const auto time = [&locale](const QDateTime& moment) {
        return locale.toString(
            moment.toLocalTime().time(), locale.timeFormat(QLocale::ShortFormat).remove(":ss"_L1));
    };
    QStringList first;
    if (!isAllDay)
        first << time(start) + u" – "_s + time(end);
    if (!calendar.isEmpty())
        first << calendar;
    QStringList lines;
    if (!first.isEmpty())
        lines << first.join(u" · "_s);
    if (location)
        lines << *location;
    return lines.join(u'\n');
}

} // namespace nimbarrow
