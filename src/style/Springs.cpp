#include "style/Springs.h"

#include <cmath>
#include <numbers>

namespace nimbarrow {

namespace {

/// What is left of its swing when it rests, below 1 in 10,000, is dropped.
struct Spring {
    /// Seconds that it would take for one swing if nothing damped it.
    double response;
    /// The part, below 1, of what would stop it from swinging at all.
    double damping;
    std::chrono::duration<double> rest;
};

constexpr Spring surfaceSpring { 0.16, 0.86, Springs::surfaceRest };
constexpr Spring stripSpring { 0.3, 0.85, std::chrono::milliseconds(520) };

/// How far it has come after a part of its time: 0 to a little over 1.
template <const Spring& spring>
qreal position(qreal progress)
{
    if (progress >= 1)
        return 1;
    const auto seconds = progress * spring.rest.count();
    const auto frequency = 2 * std::numbers::pi / spring.response;
    const auto decay = spring.damping * frequency;
    const auto swing = frequency * std::sqrt(1 - spring.damping * spring.damping);
    return 1
        - std::exp(-decay * seconds)
        * (std::cos(swing * seconds) + decay / swing * std::sin(swing * seconds));
}

template <const Spring& spring>
QEasingCurve curve()
{
    QEasingCurve curve;
    curve.setCustomType(position<spring>);
    return curve;
}

} // namespace

QEasingCurve Springs::surface()
{
    return curve<surfaceSpring>();
}

QEasingCurve Springs::strip()
{
    return curve<stripSpring>();
}

int Springs::stripDuration()
{
    return static_cast<int>(stripSpring.rest.count() * 1000);
}

} // namespace nimbarrow
