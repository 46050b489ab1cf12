#pragma once

#include "platform/Port.h"

#include <QString>

#include <functional>
#include <memory>

namespace nimbarrow {

/// Port: asks the user where there is no surface to ask in. This class itself is a system where nobody can.
class Questions : public Port {
public:
    struct Question {
        QString title;
        QString text;
        /// What the two answers are called.
        QString yes;
        QString no;
    };

    enum class Answer {
        Yes,
        No,
        /// The user has sent the question away.
        Dismissed,
        /// The question has not reached the user, or has gone by itself.
        None
    };

    /// A question that stands. Destroying it takes it back, also from inside its own `answered`.
    class Standing : public Port { };

    /// `answered` is called on the main thread, once at most, and perhaps before this returns. Null where
    /// nobody can be asked.
    [[nodiscard]] virtual std::unique_ptr<Standing> ask(
        const Question& question, std::function<void(Answer)> answered)
    {
        Q_UNUSED(question)
        answered(Answer::None);
        return {};
    }
};

} // namespace nimbarrow
