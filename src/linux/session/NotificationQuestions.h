#pragma once

#include "linux/session/NotificationQuestion.h"
#include "platform/Questions.h"

#include <QDBusConnection>

#include <optional>
#include <utility>

namespace nimbarrow {

/// Asks by the desktop's notification service, which answers as long as it can show the answers.
class NotificationQuestions final : public Questions {
public:
    /// Without a bus nobody can be asked.
    explicit NotificationQuestions(std::optional<QDBusConnection> bus)
        : m_bus(std::move(bus))
    {
    }

    [[nodiscard]] std::unique_ptr<Standing> ask(
        const Question& question, std::function<void(Answer)> answered) override
    {
        if (!m_bus)
            return Questions::ask(question, std::move(answered));
        return std::make_unique<NotificationQuestion>(*m_bus, question, std::move(answered));
    }

private:
    std::optional<QDBusConnection> m_bus;
};

} // namespace nimbarrow
