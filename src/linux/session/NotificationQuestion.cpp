#include "linux/session/NotificationQuestion.h"

#include "linux/session/BusCalls.h"

#include <QDBusReply>
#include <QVariantMap>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

const QString service = u"org.freedesktop.Notifications"_s;
const QString notificationsPath = u"/org/freedesktop/Notifications"_s;
const QString yesAction = u"yes"_s;
const QString noAction = u"no"_s;

QDBusMessage callOf(const QString& method)
{
    return QDBusMessage::createMethodCall(service, notificationsPath, service, method);
}

} // namespace

NotificationQuestion::NotificationQuestion(
    const QDBusConnection& bus, Questions::Question question, std::function<void(Questions::Answer)> answered)
    : m_bus(bus)
    , m_question(std::move(question))
    , m_answered(std::move(answered))
{
    followBusSignal(
        bus, notificationsPath, service, u"ActionInvoked"_s, this, SLOT(followAction(uint, QString)));
    followBusSignal(
        bus, notificationsPath, service, u"NotificationClosed"_s, this, SLOT(followEnd(uint, uint)));
    callBus(bus, callOf(u"GetCapabilities"_s), this, [this](const QDBusMessage& answer) {
        const QDBusReply<QStringList> capabilities = answer;
        // A question that nobody can answer only troubles.
        if (capabilities.value().contains("actions"_L1))
            show();
        else
            finish(Questions::Answer::None);
    });
}

NotificationQuestion::~NotificationQuestion()
{
    if (m_notification == 0)
        return;
    auto call = callOf(u"CloseNotification"_s);
    call.setAutoStartService(false);
    m_bus.send(call << m_notification);
}

void NotificationQuestion::show()
{
    auto call = callOf(u"Notify"_s);
    const QVariantMap hints { { u"desktop-entry"_s, u"ua.tessak.Nimbarrow"_s } };
    constexpr int never = 0;
    call << u"Nimbarrow"_s << 0U << u"ua.tessak.Nimbarrow"_s << m_question.title
         << m_question.text.toHtmlEscaped()
         << QStringList { yesAction, m_question.yes, noAction, m_question.no } << hints << never;
    callBus(m_bus, call, this, [this](const QDBusMessage& answer) {
        m_notification = QDBusReply<uint>(answer).value();
        if (m_notification == 0)
            finish(Questions::Answer::None);
    });
}

void NotificationQuestion::followAction(uint notification, const QString& action)
{
    if (notification == m_notification && (action == yesAction || action == noAction))
        finish(action == yesAction ? Questions::Answer::Yes : Questions::Answer::No);
}

void NotificationQuestion::followEnd(uint notification, uint reason)
{
    if (notification != m_notification)
        return;
    m_notification = 0;
    constexpr uint dismissedByUser = 2;
    finish(reason == dismissedByUser ? Questions::Answer::Dismissed : Questions::Answer::None);
}

void NotificationQuestion::finish(Questions::Answer answer)
{
    // It may destroy this.
    if (const auto answered = std::exchange(m_answered, {}))
        answered(answer);
}

} // namespace nimbarrow
