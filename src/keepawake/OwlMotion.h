#pragma once

#include "keepawake/Glide.h"
#include "keepawake/OwlPose.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <qqmlintegration.h>

#include <functional>

namespace nimbarrow {

/// What the owl does with itself: asleep it breathes and its z's rise; awake it stands still, and now and
/// then blinks, looks aside, tilts its head or hops. Nothing runs while nobody can see it or when motion is
/// not wanted.
class OwlMotion final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    /// Numbers from 0 to below 1.
    using Random = std::function<double()>;

    /// The ports outlive the motion.
    OwlMotion(const Clock& clock, Scheduler& scheduler, Random random, QObject* parent = nullptr);

    [[nodiscard]] const OwlPose& pose() const { return m_pose; }

    void setAwake(bool awake);
    /// Whether somebody can see the owl.
    void setActive(bool active);
    void setReduced(bool reduced);

Q_SIGNALS:
    void poseChanged();

private:
    using Seconds = Glide::Seconds;

    [[nodiscard]] bool runs() const { return m_active && !m_reduced; }
    [[nodiscard]] Seconds now() const;
    void restart();
    void startIdle();
    void wakeUp();
    void jump();
    void fidget();
    void blink();
    void glance();
    void tilt();
    void hop();
    void after(Seconds delay, std::function<void()> step);
    /// Draws frames until what was set in motion has come to rest.
    void move(const Glide& glide);
    void drawEvery(Scheduler::Duration length);
    void frame();
    void publish(const OwlPose& pose);

    const Clock& m_clock;
    Scheduler& m_scheduler;
    Random m_random;
    bool m_awake = false;
    bool m_active = false;
    bool m_reduced = false;

    OwlPose m_pose;
    Seconds m_idleSince {};
    Seconds m_movesUntil {};
    Glide m_wakeTrack;
    Glide m_blinkTrack;
    Glide m_glanceTrack;
    Glide m_tiltTrack;
    Glide m_hopTrack;
    Timer m_frames;
    Scheduler::Duration m_frameLength {};
    /// The next step of the move that is being made, or the next move.
    Timer m_step;
};

} // namespace nimbarrow
