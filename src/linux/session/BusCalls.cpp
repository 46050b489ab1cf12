#include "linux/session/BusCalls.h"

#include <QDBusPendingCallWatcher>

#include <utility>

namespace nimbarrow {

void callBus(const QDBusConnection& bus, const QDBusMessage& question, QObject* receiver,
    std::function<void(const QDBusMessage&)> answered, int timeout)
{
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(question, timeout), receiver);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, receiver, [watcher, answered = std::move(answered)] {
            watcher->deleteLater();
            answered(watcher->reply());
        });
}

void followBusSignal(QDBusConnection bus, const QString& path, const QString& interface, const QString& name,
    QObject* receiver, const char* slot, const QStringList& firstArguments)
{
    bus.connect({}, path, interface, name, firstArguments, {}, receiver, slot);
}

} // namespace nimbarrow
