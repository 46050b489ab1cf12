#pragma once

#include "platform/Questions.h"

#include <QDBusConnection>
#include <QObject>

namespace nimbarrow {

/// One question among the desktop's notifications.
class NotificationQuestion final : public QObject, public Questions::Standing {
    Q_OBJECT

public:
    NotificationQuestion(const QDBusConnection& bus, Questions::Question question,
        std::function<void(Questions::Answer)> answered);
    ~NotificationQuestion() override;
    Q_DISABLE_COPY_MOVE(NotificationQuestion)

private Q_SLOTS:
    void followAction(uint notification, const QString& action);
    void followEnd(uint notification, uint reason);

private:
    void show();
    void finish(Questions::Answer answer);

    QDBusConnection m_bus;
    Questions::Question m_question;
    std::function<void(Questions::Answer)> m_answered;
    /// The service's number of it; 0 while it does not stand.
    uint m_notification = 0;
};

} // namespace nimbarrow
