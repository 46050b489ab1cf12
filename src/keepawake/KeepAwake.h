#pragma once

#include "platform/Clock.h"
#include "platform/PowerAssertions.h"
#include "platform/Scheduler.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <qqmlintegration.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace nimbarrow {

/// Prevents that the display and the computer go to sleep, for some hours or until it is turned off.
class KeepAwake final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged FINAL)
    /// Invalid while inactive and when there is no end.
    Q_PROPERTY(QDateTime until READ untilOrInvalid NOTIFY untilChanged FINAL)
    /// "1:59" in hours and minutes, "∞" when there is no end; empty while inactive.
    Q_PROPERTY(QString timeLeft READ timeLeft NOTIFY timeLeftChanged FINAL)
    /// What the picker offers, each by its `Option::id`.
    Q_PROPERTY(QList<int> choices READ choices CONSTANT FINAL)

public:
    /// One entry of the picker.
    struct Option {
        /// Until the user turns it off, when absent.
        std::optional<int> hours;

        [[nodiscard]] constexpr int id() const { return hours.value_or(0); }
    };

    static constexpr std::array options { Option { 1 }, Option { 2 }, Option { 3 }, Option {} };

    /// The ports outlive the object.
    KeepAwake(PowerAssertions& power, const Clock& clock, Scheduler& scheduler, QObject* parent = nullptr);

    /// Called when a period has run out, and not when it was turned off.
    std::function<void()> onExpired;

    [[nodiscard]] bool isActive() const { return m_isActive; }
    [[nodiscard]] const std::optional<QDateTime>& until() const { return m_until; }
    [[nodiscard]] QString timeLeft() const { return m_timeLeft; }
    [[nodiscard]] static QList<int> choices();

    /// Replaces what was chosen before; for ever without `seconds`. Nothing comes of it where no sleep can be
    /// prevented.
    void activate(std::optional<double> seconds);
    /// Activates what a choice stands for.
    Q_INVOKABLE void choose(int id);
    Q_INVOKABLE void deactivate();
    /// Looks at the clock now instead of in a while.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void isActiveChanged();
    void untilChanged();
    void timeLeftChanged();

private:
    using Type = PowerAssertions::Type;

    void createAssertion(Type type);
    void dropAssertion(Type type);
    void releaseAll();
    void expire();
    void arm();
    void publish(bool isActive, const std::optional<QDateTime>& until);
    void publishTimeLeft();
    /// Until the period ends by whichever of the two clocks says so first.
    [[nodiscard]] Scheduler::Duration remaining() const;
    [[nodiscard]] QDateTime untilOrInvalid() const { return m_until.value_or(QDateTime()); }

    PowerAssertions& m_power;
    const Clock& m_clock;
    Scheduler& m_scheduler;

    struct Held {
        Type type;
        std::unique_ptr<PowerAssertions::Assertion> assertion;
    };
    std::vector<Held> m_assertions;
    bool m_isActive = false;
    std::optional<QDateTime> m_until;
    /// The end by the clock that nobody sets.
    Clock::Instant m_deadline;
    QString m_timeLeft;
    Timer m_timer;
};

} // namespace nimbarrow
