#pragma once

#include <chrono>

/// How the surface moves: one spring for its size and its corners, and the delays that wait for it.
namespace nimbarrow::notchmotion {

using namespace std::chrono_literals;

/// Seconds that the undamped spring takes for one swing.
inline constexpr double springResponse = 0.16;
/// 1 stops without overshooting.
inline constexpr double springDamping = 0.86;

/// Until the panel may shrink to the notch, or back from a preview, after the spring was let go.
inline constexpr auto settleDelay = 280ms;

} // namespace nimbarrow::notchmotion
