#include "clipboard/StripSpring.h"

#include "style/Spring.h"

namespace nimbarrow {

namespace {

// In seconds, and a part of what would stop it from swinging.
constexpr double response = 0.3;
constexpr double damping = 0.85;
// In seconds: what is left of the swing by then is below 1 in 10,000.
constexpr double rest = 0.52;

qreal position(qreal progress)
{
    return progress >= 1 ? 1 : springPosition(progress * rest, response, damping);
}

} // namespace

QEasingCurve StripSpring::curve()
{
    QEasingCurve curve;
    curve.setCustomType(position);
    return curve;
}

int StripSpring::duration()
{
    return static_cast<int>(rest * 1000);
}

} // namespace nimbarrow
