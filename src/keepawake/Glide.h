#pragma once

#include <chrono>

namespace nimbarrow {

/// One number on its way to where it should be.
class Glide {
public:
    /// Seconds since any fixed moment.
    using Seconds = std::chrono::duration<double>;

    enum class Ease { Out, InOut };

    explicit Glide(double value = 0);

    /// Takes `duration` from where it is at `now`.
    void ease(Ease ease, double target, Seconds duration, Seconds now);

    /// Swings to `target` with the speed that it has at `now`. `response` is the time of one undamped swing;
    /// `damping` is below 1.
    void spring(double target, Seconds response, double damping, Seconds now);

    [[nodiscard]] double value(Seconds now) const;
    /// When it has arrived, for the eye.
    [[nodiscard]] Seconds rest() const { return m_rest; }

    /// From 0 to 1 for a part of the way from 0 to 1.
    [[nodiscard]] static double eased(Ease ease, double part);

private:
    enum class Way { Still, Eased, Springing };

    [[nodiscard]] double speed(Seconds now) const;

    Way m_way = Way::Still;
    Ease m_ease = Ease::Out;
    Seconds m_start {};
    Seconds m_rest {};
    double m_from = 0;
    double m_target = 0;
    // Of the swing: per second, and the parts of its sine; those of its cosine are what it has to go.
    double m_decay = 0;
    double m_frequency = 0;
    double m_sine = 0;
};

} // namespace nimbarrow
