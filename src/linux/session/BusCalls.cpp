#include "linux/session/BusCalls.h"

#include <QDBusPendingCallWatcher>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

const QString driverName = u"org.freedesktop.DBus"_s;
const QString driverPath = u"/org/freedesktop/DBus"_s;

} // namespace

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

QDBusMessage questionToBus(const QString& method)
{
    return QDBusMessage::createMethodCall(driverName, driverPath, driverName, method);
}

void followBusSignal(QDBusConnection bus, const QString& path, const QString& interface, const QString& name,
    QObject* receiver, const char* slot, const QStringList& firstArguments)
{
    bus.connect({}, path, interface, name, firstArguments, {}, receiver, slot);
}

void followBusOwner(const QDBusConnection& bus, const QString& service, QObject* receiver, const char* slot)
{
    followBusSignal(bus, driverPath, driverName, u"NameOwnerChanged"_s, receiver, slot, { service });
}

} // namespace nimbarrow
