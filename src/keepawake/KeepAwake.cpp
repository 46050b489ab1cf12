#include "keepawake/KeepAwake.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

const QString assertionName = u"Nimbarrow keep awake"_s;

constexpr std::array types { PowerAssertions::Type::PreventUserIdleDisplaySleep,
    PowerAssertions::Type::PreventSystemSleep };

/// How late the end of a period may be noticed after the computer has slept through it or its clock was set.
constexpr Scheduler::Duration tolerance = 30s;

/// As long as a date can be reckoned with.
constexpr double longest = 3600.0 * 24 * 365 * 100;

} // namespace

KeepAwake::KeepAwake(PowerAssertions& power, const Clock& clock, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_power(power)
    , m_clock(clock)
    , m_scheduler(scheduler)
{
}

QList<int> KeepAwake::choices()
{
    QList<int> choices;
    for (const auto& option : options)
        choices << option.id();
    return choices;
}

void KeepAwake::activate(std::optional<double> seconds)
{
    releaseAll();
    for (const auto type : types)
        createAssertion(type);
    if (m_assertions.empty())
        return;
    std::optional<QDateTime> until;
    if (seconds) {
        const Scheduler::Duration length(static_cast<qint64>(std::clamp(*seconds, 0.0, longest) * 1000));
        until = m_clock.wallTime().addMSecs(length.count());
        m_deadline = m_clock.now() + length;
    }
    publish(true, until);
    arm();
}

void KeepAwake::choose(int id)
{
    const auto* const option
        = std::find_if(options.begin(), options.end(), [id](const Option& o) { return o.id() == id; });
    if (option == options.end())
        return;
    activate(option->hours ? std::optional<double>(*option->hours * 3600.0) : std::nullopt);
}

void KeepAwake::deactivate()
{
    releaseAll();
    publish(false, {});
}

void KeepAwake::refresh()
{
    if (m_isActive && m_until && m_timer.isSet() && remaining() <= 0ms)
        expire();
    else
        publishTimeLeft();
}

void KeepAwake::createAssertion(Type type)
{
    if (auto assertion = m_power.create(type, assertionName, [this, type] { dropAssertion(type); }))
        m_assertions.push_back({ type, std::move(assertion) });
}

// A service turned out not to grant it. Nothing is told about that as long as anything is held; but being
// called awake while nothing is would be a lie.
void KeepAwake::dropAssertion(Type type)
{
    const auto end = std::remove_if(
        m_assertions.begin(), m_assertions.end(), [type](const Held& held) { return held.type == type; });
    m_assertions.erase(end, m_assertions.end());
    if (m_assertions.empty())
        deactivate();
}

void KeepAwake::releaseAll()
{
    m_timer.cancel();
    m_assertions.clear();
}

void KeepAwake::expire()
{
    if (!m_isActive)
        return;
    releaseAll();
    publish(false, {});
    if (onExpired)
        onExpired();
}

// Timers stand still while the computer sleeps, and the user's clock jumps; so both are looked at now and
// then. Each look falls on a whole number of tolerances before the end, and with that on each change of the
// minutes.
void KeepAwake::arm()
{
    if (!m_until)
        return;
    const auto left = remaining();
    const auto next = left > 0ms && left % tolerance == 0ms
        ? tolerance
        : std::max<Scheduler::Duration>(left, 0ms) % tolerance;
    m_timer = m_scheduler.after(next, [this] {
        if (remaining() <= 0ms) {
            expire();
            return;
        }
        publishTimeLeft();
        arm();
    });
}

Scheduler::Duration KeepAwake::remaining() const
{
    // Rounded up, or a timer that is punctual would look in vain.
    const auto running = std::chrono::ceil<Scheduler::Duration>(m_deadline - m_clock.now());
    return std::min(running, Scheduler::Duration(m_clock.wallTime().msecsTo(*m_until)));
}

void KeepAwake::publish(bool isActive, const std::optional<QDateTime>& until)
{
    const bool activityChanged = m_isActive != isActive;
    const bool endChanged = m_until != until;
    m_isActive = isActive;
    m_until = until;
    if (activityChanged)
        Q_EMIT isActiveChanged();
    if (endChanged)
        Q_EMIT untilChanged();
    publishTimeLeft();
}

void KeepAwake::publishTimeLeft()
{
    QString text;
    if (m_isActive && !m_until) {
        text = u"∞"_s;
    } else if (m_isActive) {
        const qint64 left = std::chrono::ceil<std::chrono::minutes>(remaining()).count();
        const auto minutes = std::max<qint64>(left, 0);
        text = QString::number(minutes / 60) + u':' + QString::number(minutes % 60).rightJustified(2, u'0');
    }
    if (m_timeLeft == text)
        return;
    m_timeLeft = text;
    Q_EMIT timeLeftChanged();
}

} // namespace nimbarrow
