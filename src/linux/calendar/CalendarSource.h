#pragma once

#include "platform/Calendars.h"
#include "qt/ThreadedQueue.h"

#include <memory>
#include <optional>

namespace nimbarrow {

/// One of the stores that a day is merged from: whether it is there, and what it told last. Who owns it locks
/// what several threads use of it: all but the store and the thread that asks it.
class CalendarSource {
public:
    enum class State { Unknown, Absent, Refused, Present };

    /// For what happens in a time; each has the number after the one before.
    struct Question {
        quint64 number = 0;
        QDateTime start;
        QDateTime end;
    };

    /// `label` names the thread that asks.
    explicit CalendarSource(const QString& label)
        : asking(label, 1)
    {
    }

    /// Nothing more is to be expected for that question.
    [[nodiscard]] bool isOver(const Question& question) const;
    /// It has told what there is.
    [[nodiscard]] bool hasTold(const Question& question) const;
    /// What it told last, if that was of the same time.
    [[nodiscard]] QList<CalendarEvent> lastTold(const Question& question) const;

    /// Nobody waits for the answer any longer.
    void giveUp(const Question& question) { m_givenUp = question.number; }
    /// True when it is news to somebody who did not wait for it.
    [[nodiscard]] bool accept(const Question& question, std::optional<QList<CalendarEvent>> events);

    State state = State::Unknown;
    /// The last question that was handed to the thread, and whether the thread has yet to begin with it.
    quint64 asked = 0;
    bool isWaiting = false;
    /// Of the main thread; null until it is present.
    std::unique_ptr<Calendars> store;

private:
    quint64 m_answered = 0;
    quint64 m_givenUp = 0;
    bool m_hasFailed = false;
    Question m_toldOf;
    QList<CalendarEvent> m_told;

public:
    /// Last, so that it has ended before the rest goes.
    ThreadedQueue asking;
};

} // namespace nimbarrow
