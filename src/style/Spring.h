#pragma once

#include <cmath>
#include <numbers>

namespace nimbarrow {

/// How far a spring that was let go from rest has come after some seconds: 0 to a little over 1. `response`
/// is the length of its swing in seconds if nothing damped it, `damping` the part, below 1, of what would
/// stop it from swinging at all.
[[nodiscard]] inline double springPosition(double seconds, double response, double damping)
{
    const auto frequency = 2 * std::numbers::pi / response;
    const auto decay = damping * frequency;
    const auto swing = frequency * std::sqrt(1 - damping * damping);
    return 1
        - std::exp(-decay * seconds)
        * (std::cos(swing * seconds) + decay / swing * std::sin(swing * seconds));
}

} // namespace nimbarrow
