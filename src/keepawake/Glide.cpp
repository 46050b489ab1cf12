#include "keepawake/Glide.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbarrow {

Glide::Glide(double value)
    : m_from(value)
    , m_target(value)
{
}

double Glide::eased(Ease ease, double part)
{
    part = std::clamp(part, 0.0, 1.0);
    if (ease == Ease::Out)
        return 1 - (1 - part) * (1 - part);
    return part * part * (3 - 2 * part);
}

void Glide::ease(Ease ease, double target, Seconds duration, Seconds now)
{
    m_from = value(now);
    m_target = target;
    m_way = Way::Eased;
    m_ease = ease;
    m_start = now;
    m_rest = now + duration;
}

void Glide::spring(double target, Seconds response, double damping, Seconds now)
{
    const auto from = value(now);
    const auto startSpeed = speed(now);
    const auto undamped = 2 * std::numbers::pi / response.count();
    m_from = from;
    m_target = target;
    m_way = Way::Springing;
    m_start = now;
    m_decay = damping * undamped;
    m_frequency = undamped * std::sqrt(1 - damping * damping);
    m_sine = (startSpeed + m_decay * (m_from - m_target)) / m_frequency;
    // What is left of the swing by then, below 1 in 200, nobody sees on so small a bird.
    m_rest = now + Seconds(std::log(200) / m_decay);
}

double Glide::value(Seconds now) const
{
    if (m_way == Way::Still || now >= m_rest)
        return m_target;
    const auto elapsed = (now - m_start).count();
    if (m_way == Way::Eased) {
        return m_from + (m_target - m_from) * eased(m_ease, elapsed / (m_rest - m_start).count());
    }
    return m_target
        + std::exp(-m_decay * elapsed)
        * ((m_from - m_target) * std::cos(m_frequency * elapsed) + m_sine * std::sin(m_frequency * elapsed));
}

double Glide::speed(Seconds now) const
{
    constexpr Seconds moment(0.0005);
    return (value(now + moment) - value(now)) / moment.count();
}

} // namespace nimbarrow
