#pragma once

namespace nimbarrow {

/// How the owl stands at one moment. As it is made it sleeps and does not move.
struct OwlPose {
    /// 0 asleep to 1 awake.
    double wake = 0;
    /// Lids of an owl that is awake, 0 open to 1 closed.
    double blink = 0;
    /// Where the eyes look, -1 left to 1 right.
    double glance = 0;
    /// Of the head, in degrees, to the right.
    double tilt = 0;
    /// Above the ground, in heights of a hop; below 0 it crouches.
    double hop = 0;
    /// 0 breathed out to 1 breathed in.
    double breathe = 0;
    /// How far the z's of its sleep have risen, 0 to 1, where the next ones take their place.
    double zRise = 0.28;

    friend bool operator==(const OwlPose&, const OwlPose&) = default;
};

} // namespace nimbarrow
