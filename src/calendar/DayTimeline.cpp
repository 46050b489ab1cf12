#include "calendar/DayTimeline.h"

#include "platform/Clock.h"
#include "platform/Opener.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

constexpr double hour = 3600; // s
constexpr qint64 snap = 900; // s
constexpr qint64 latestStart = 85'500; // s
constexpr qint64 minute = 60'000; // ms
constexpr double markDistance = 3;
constexpr qsizetype mostAllDay = 200;

} // namespace

DayTimeline::DayTimeline(
    CalendarModel& model, const Clock& clock, Scheduler& scheduler, Opener& opener, QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_opener(opener)
{
    connect(&model, &CalendarModel::accessChanged, this, &DayTimeline::accessChanged);
    connect(&model, &CalendarModel::eventsChanged, this, &DayTimeline::layOut);
    connect(&model, &CalendarModel::dayStartChanged, this, [this] {
        layOut();
        Q_EMIT dayChanged();
        if (m_minute.isSet())
            followNow();
    });
    layOut();
}

void DayTimeline::layOut()
{
    m_layout = timelinelayout::place(m_model.events(), m_model.dayStart());
    m_blocks.setPlacements(timelinelayout::uncovered(m_layout.placements));
    Q_EMIT eventsChanged();
}

QVariantList DayTimeline::marks() const
{
    QVariantList marks;
    auto last = -markDistance;
    for (const auto& placement : m_layout.placements) {
        if (placement.x - last < markDistance)
            continue;
        last = placement.x;
        marks << QVariant::fromValue(placement);
    }
    return marks;
}

QVariantList DayTimeline::allDay() const
{
    QVariantList events;
    for (const auto& event : m_model.events()) {
        if (event.isAllDay && events.size() < mostAllDay)
            events << QVariant::fromValue(event);
    }
    return events;
}

QStringList DayTimeline::hours() const
{
    const QLocale locale;
    // A locale with a sign for noon counts to twelve.
    const auto format
        = locale.timeFormat(QLocale::ShortFormat).contains(u'a', Qt::CaseInsensitive) ? u"h AP"_s : u"H"_s;
    QStringList hours;
    for (auto number = 0; number < hoursShown; ++number)
        hours << locale.toString(m_model.dayStart().addSecs(number * qint64 { 3600 }), format);
    return hours;
}

void DayTimeline::setActive(bool active)
{
    if (active == m_minute.isSet())
        return;
    if (active)
        followNow();
    else
        m_minute.cancel();
}

void DayTimeline::followNow()
{
    const auto now = m_clock.wallTime();
    if (const auto x = timelinelayout::offset(m_model.dayStart(), now); x != m_nowX) {
        m_nowX = x;
        Q_EMIT nowChanged();
    }
    const auto untilNext = minute - now.toMSecsSinceEpoch() % minute;
    m_minute = m_scheduler.after(std::chrono::milliseconds(untilNext), [this] { followNow(); });
}

void DayTimeline::open(const DayEvent& event)
{
    m_model.open(event);
}

void DayTimeline::join(const DayEvent& event)
{
    // Who sends an invitation may write anything into it.
    static const QStringList callSchemes { u"https"_s, u"http"_s, u"zoommtg"_s, u"msteams"_s };
    if (event.meetingUrl && callSchemes.contains(event.meetingUrl->scheme()))
        m_opener.open(*event.meetingUrl);
}

void DayTimeline::createAt(double x)
{
    const auto seconds = static_cast<qint64>(std::floor(x / timelinelayout::hourWidth * hour / snap)) * snap;
    m_model.createEvent(m_model.dayStart().addSecs(std::clamp(seconds, qint64 { 0 }, latestStart)));
}

bool DayTimeline::canShowRefusal() const
{
    return m_opener.hasSettings();
}

void DayTimeline::requestAccess()
{
    if (m_model.access() == CalendarAccess::NotDetermined)
        m_model.requestAccess({});
    else
        m_opener.open(QUrl(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars"_s));
}

} // namespace nimbarrow
