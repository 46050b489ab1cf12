#pragma once

#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>

namespace nimbarrow {

/// Asks a service of the bus. `answered` runs on the main loop with its answer, or with an error, unless
/// `receiver` is gone by then. `timeout` is in milliseconds; without one the bus's own of 25 s counts.
void callBus(const QDBusConnection& bus, const QDBusMessage& question, QObject* receiver,
    std::function<void(const QDBusMessage& answer)> answered, int timeout = -1);

/// A question to the bus itself.
[[nodiscard]] QDBusMessage questionToBus(const QString& method);

/// Connects a slot to a signal, whoever sends it: with a sender's name Qt would wait for the bus to tell who
/// that is. `firstArguments` are those that the signal must have.
void followBusSignal(QDBusConnection bus, const QString& path, const QString& interface, const QString& name,
    QObject* receiver, const char* slot, const QStringList& firstArguments = {});

/// Connects a slot to the coming and going of a service: its name, its owner before and the new one, of which
/// one is empty when it comes or goes.
void followBusOwner(const QDBusConnection& bus, const QString& service, QObject* receiver, const char* slot);

} // namespace nimbarrow
