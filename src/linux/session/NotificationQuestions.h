#pragma once

#include "platform/Questions.h"

#include <QDBusConnection>

#include <optional>

namespace nimbarrow {

/// Asks by the desktop's notification service, which answers as long as it can show the answers.
class NotificationQuestions final : public Questions {
public:
    /// Without a bus nobody can be asked.
    explicit NotificationQuestions(std::optional<QDBusConnection> bus);

    [[nodiscard]] std::unique_ptr<Standing> ask(
        const Question& question, std::function<void(Answer)> answered) override;

private:
    std::optional<QDBusConnection> m_bus;
};

} // namespace nimbarrow
