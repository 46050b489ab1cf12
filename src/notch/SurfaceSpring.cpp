#include "notch/SurfaceSpring.h"

#include "notch/NotchMotion.h"
#include "style/Spring.h"

namespace nimbarrow {

QEasingCurve SurfaceSpring::curve()
{
    QEasingCurve curve;
    curve.setCustomType(position);
    return curve;
}

int SurfaceSpring::duration()
{
    return static_cast<int>(notchmotion::settleDelay.count());
}

qreal SurfaceSpring::position(qreal progress)
{
    // What is left of the swing by then, below 1 in 10,000, is dropped: an animation ends on its target.
    if (progress >= 1)
        return 1;
    const auto seconds = progress * std::chrono::duration<double>(notchmotion::settleDelay).count();
    return springPosition(seconds, notchmotion::springResponse, notchmotion::springDamping);
}

} // namespace nimbarrow
