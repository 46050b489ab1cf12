#include "keepawake/OwlMotion.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

using Seconds = Glide::Seconds;

// Of one breath in, or out, and of a z on its way up.
constexpr Seconds breath = 1.7s;
constexpr Seconds rise = 2.2s;

constexpr Seconds closing = 0.07s;
constexpr Seconds opening = 0.09s;
constexpr Seconds dart = 0.16s;
constexpr Seconds falling = 0.18s;
constexpr Seconds settling = 0.25s;

// Long enough not to tire, short enough to be seen.
constexpr Seconds shortestPause = 1.6s;
constexpr Seconds longestPause = 5.2s;

constexpr double tiltAngle = 13;
constexpr double smallHop = 0.45;

// A z moves by a pixel or two in this time, and breathing by less. Each frame costs the whole surface.
constexpr Scheduler::Duration sleepingFrame = 83ms;
constexpr Scheduler::Duration movingFrame = 16ms;

} // namespace

OwlMotion::OwlMotion(const Clock& clock, Scheduler& scheduler, Random random, QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_random(std::move(random))
{
}

void OwlMotion::setAwake(bool awake)
{
    if (m_awake == awake)
        return;
    m_awake = awake;
    if (!runs()) {
        restart();
        return;
    }
    m_wakeTrack.ease(Glide::Ease::InOut, awake ? 1 : 0, awake ? dart : settling, now());
    if (awake)
        wakeUp();
    else
        startIdle();
}

void OwlMotion::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    restart();
}

void OwlMotion::setReduced(bool reduced)
{
    if (m_reduced == reduced)
        return;
    m_reduced = reduced;
    restart();
}

Seconds OwlMotion::now() const
{
    return m_clock.now().time_since_epoch();
}

// What was under way is forgotten: who comes back finds an owl that has just begun.
void OwlMotion::restart()
{
    m_frames.cancel();
    m_step.cancel();
    m_movesUntil = {};
    m_wakeTrack = Glide(m_awake ? 1 : 0);
    m_blinkTrack = m_glanceTrack = m_tiltTrack = m_hopTrack = Glide();
    publish({ .wake = m_awake ? 1.0 : 0.0 });
    if (!runs())
        return;
    if (m_awake)
        fidget();
    else
        startIdle();
}

void OwlMotion::startIdle()
{
    m_step.cancel();
    m_idleSince = now();
    // Whatever it was doing, it sinks down from there.
    m_glanceTrack.ease(Glide::Ease::InOut, 0, settling, m_idleSince);
    m_tiltTrack.ease(Glide::Ease::InOut, 0, settling, m_idleSince);
    m_hopTrack.ease(Glide::Ease::InOut, 0, settling, m_idleSince);
    m_blinkTrack = Glide();
    move(m_hopTrack);
}

void OwlMotion::wakeUp()
{
    move(m_wakeTrack);
    jump();
}

void OwlMotion::jump()
{
    const auto spring = [this](double target) {
        m_hopTrack.spring(target, 0.22s, 0.45, now());
        move(m_hopTrack);
    };
    spring(1);
    after(falling, [this, spring] {
        spring(0);
        fidget();
    });
}

void OwlMotion::fidget()
{
    after(shortestPause + m_random() * (longestPause - shortestPause), [this] {
        // Two in five are blinks, as with anybody who looks at you.
        static constexpr std::array moves { &OwlMotion::blink, &OwlMotion::glance, &OwlMotion::blink,
            &OwlMotion::tilt, &OwlMotion::hop };
        const auto choice = static_cast<std::size_t>(m_random() * double(moves.size()));
        (this->*moves.at(std::min(choice, moves.size() - 1)))();
    });
}

void OwlMotion::blink()
{
    m_blinkTrack.ease(Glide::Ease::InOut, 1, closing, now());
    move(m_blinkTrack);
    after(closing, [this] {
        m_blinkTrack.ease(Glide::Ease::InOut, 0, opening, now());
        move(m_blinkTrack);
        fidget();
    });
}

void OwlMotion::glance()
{
    m_glanceTrack.ease(Glide::Ease::Out, m_random() < 0.5 ? -1 : 1, dart, now());
    move(m_glanceTrack);
    after(dart + 0.5s + m_random() * 0.7s, [this] {
        m_glanceTrack.ease(Glide::Ease::Out, 0, dart, now());
        move(m_glanceTrack);
        fidget();
    });
}

void OwlMotion::tilt()
{
    const auto spring = [this](double target) {
        m_tiltTrack.spring(target, 0.35s, 0.6, now());
        move(m_tiltTrack);
    };
    spring(m_random() < 0.5 ? -tiltAngle : tiltAngle);
    after(0.9s + m_random() * 0.9s, [this, spring] {
        spring(0);
        fidget();
    });
}

void OwlMotion::hop()
{
    const auto spring = [this](double target) {
        m_hopTrack.spring(target, 0.3s, 0.55, now());
        move(m_hopTrack);
    };
    spring(smallHop);
    after(falling, [this, spring] {
        spring(0);
        fidget();
    });
}

void OwlMotion::after(Seconds delay, std::function<void()> step)
{
    m_step = m_scheduler.after(std::chrono::round<Scheduler::Duration>(delay), std::move(step));
}

void OwlMotion::move(const Glide& glide)
{
    m_movesUntil = std::max(m_movesUntil, glide.rest());
    drawEvery(movingFrame);
}

void OwlMotion::drawEvery(Scheduler::Duration length)
{
    if (m_frames.isSet() && m_frameLength == length)
        return;
    m_frameLength = length;
    m_frames = m_scheduler.every(length, 0ms, [this] { frame(); });
}

void OwlMotion::frame()
{
    const auto at = now();
    const auto idle = at - m_idleSince;
    OwlPose pose { .wake = m_wakeTrack.value(at),
        .blink = m_blinkTrack.value(at),
        .glance = m_glanceTrack.value(at),
        .tilt = m_tiltTrack.value(at),
        .hop = m_hopTrack.value(at) };
    if (pose.wake < 1) {
        // In and out again, over and over.
        const auto breaths = std::fmod(idle / breath, 2.0);
        pose.breathe
            = (1 - pose.wake) * Glide::eased(Glide::Ease::InOut, breaths < 1 ? breaths : 2 - breaths);
        pose.zRise = std::fmod(pose.zRise + idle / rise, 1.0);
    }
    publish(pose);
    if (at < m_movesUntil)
        return;
    if (m_awake)
        m_frames.cancel();
    else
        drawEvery(sleepingFrame);
}

void OwlMotion::publish(const OwlPose& pose)
{
    if (m_pose == pose)
        return;
    m_pose = pose;
    Q_EMIT poseChanged();
}

} // namespace nimbarrow
