#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QHash>

namespace nimbarrow {

/// The portals of a desktop with a user who answers at once. Remembers what it was asked, as lines of text.
class Portals : public QDBusVirtualObject {
public:
    /// By the last word of the portal's name; the others are not there.
    QHash<QString, uint> versions;
    int versionsTold = 0;
    /// Of the user: 0 yes, 1 no, 2 anything else.
    uint response = 0;
    /// Whether each question is an error.
    bool refuses = false;
    /// Whether the user does not answer.
    bool isSilent = false;
    QStringList asked;

    /// On a bus, under a name of its own in this process. Again, and it is another portal for everybody.
    [[nodiscard]] bool serve(const QString& busAddress, const QString& name)
    {
        auto bus = QDBusConnection::connectToBus(busAddress, name);
        bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        bus.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
        return bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath)
            && bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const auto arguments = message.arguments();
        if (message.member() == QLatin1StringView("Get")) {
            ++versionsTold;
            const auto version = versions.value(arguments.at(0).toString().section(QLatin1Char('.'), -1));
            return connection.send(version > 0
                    ? message.createReply(QVariant::fromValue(QDBusVariant(version)))
                    : message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such interface")));
        }
        auto options = arguments.isEmpty() ? QVariantMap() : qdbus_cast<QVariantMap>(arguments.constLast());
        const auto token = options.take(QStringLiteral("handle_token")).toString();
        const auto [answer, results] = hear(message, options);
        if (refuses)
            return connection.send(message.createErrorReply(
                QStringLiteral("org.freedesktop.portal.Error.Failed"), QStringLiteral("no")));
        if (token.isEmpty())
            return !message.isReplyRequired() || connection.send(message.createReply());
        const auto path
            = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                  .arg(message.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_')), token);
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        if (isSilent)
            return true;
        auto signal = QDBusMessage::createSignal(
            path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal << answer << results;
        return connection.send(signal);
    }

protected:
    struct Answer {
        uint response = 0;
        QVariantMap results {};
    };

    /// Writes down the question in `asked`, where that is of interest, and answers it.
    [[nodiscard]] virtual Answer hear(const QDBusMessage& question, const QVariantMap& options) = 0;
};

} // namespace nimbarrow
