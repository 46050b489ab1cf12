#include "linux/session/NotificationQuestions.h"

#include "linux/session/NotificationQuestion.h"

#include <utility>

namespace nimbarrow {

NotificationQuestions::NotificationQuestions(std::optional<QDBusConnection> bus)
    : m_bus(std::move(bus))
{
}

std::unique_ptr<Questions::Standing> NotificationQuestions::ask(
    const Question& question, std::function<void(Answer)> answered)
{
    if (!m_bus)
        return Questions::ask(question, std::move(answered));
    return std::make_unique<NotificationQuestion>(*m_bus, question, std::move(answered));
}

} // namespace nimbarrow
