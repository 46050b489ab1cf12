#pragma once

#include "support/PrivateBus.h"

#include <QByteArray>
#include <QStringList>

#include <memory>

namespace nimbarrow {

/// A real Evolution Data Server on a message bus and in folders of its own, and another program that uses it.
/// The process that makes one has its environment changed.
class DataServer {
public:
    /// `folder` is for the server alone. It has the calendars "system-calendar" and "second" (red), and a
    /// mail account of sam@example.org.
    explicit DataServer(const QString& folder);

    /// Gives a calendar the components of that text, as the other program.
    [[nodiscard]] bool put(
        const QByteArray& components, const QString& calendar = QStringLiteral("system-calendar"));
    /// Removes every event, as the other program.
    [[nodiscard]] bool clear();
    /// The events of the first calendar, as the other program sees them: "<uid> <start> <end> <title>".
    [[nodiscard]] QStringList list();

    /// Ends the bus, and the server with it, for good.
    void endBus() { m_bus.reset(); }

    /// The processes of the server.
    [[nodiscard]] QList<qint64> processes() const;

    /// For main(): does what the other program is to do, when this process is it; -1 otherwise.
    [[nodiscard]] static int runAsOther(const QStringList& arguments);

private:
    [[nodiscard]] bool other(const QStringList& arguments, const QByteArray& input = {});

    std::unique_ptr<PrivateBus> m_bus;
    QString m_output;
};

} // namespace nimbarrow
