#include "linux/session/PortalRequest.h"

#include "linux/session/BusCalls.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QObject>
#include <QUuid>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

const QString portalName = u"org.freedesktop.portal.Desktop"_s;
const QString desktopPortalPath = u"/org/freedesktop/portal/desktop"_s;

/// One question; it ends with its answer.
class Request final : public QObject {
    Q_OBJECT

public:
    Request(QObject* receiver, std::function<void(const PortalAnswer&)> answered)
        : QObject(receiver)
        , m_answered(std::move(answered))
    {
    }

    void end(const PortalAnswer& answer)
    {
        const auto answered = std::exchange(m_answered, {});
        deleteLater();
        if (answered)
            answered(answer);
    }

public Q_SLOTS:
    void respond(uint response, const QVariantMap& results)
    {
        using enum PortalAnswer::Kind;
        end({ response == 0 ? Granted : response == 1 ? Refused : Failed, results });
    }

    /// Who has asked the user is gone, and the question with it.
    void followOwner(const QString& /*name*/, const QString& before, const QString& /*now*/)
    {
        if (!before.isEmpty())
            end({});
    }

private:
    std::function<void(const PortalAnswer&)> m_answered;
};

} // namespace

void askPortal(const QDBusConnection& bus, const QString& interface, const QString& method,
    const QVariantList& arguments, QVariantMap options, QObject* receiver,
    std::function<void(const PortalAnswer&)> answered)
{
    auto* const request = new Request(receiver, std::move(answered));
    const auto token = portalToken();
    const auto sender = bus.baseService().mid(1).replace(u'.', u'_');
    // Before the question, for the answer may be as fast.
    followBusSignal(bus, desktopPortalPath + "/request/"_L1 + sender + u'/' + token,
        u"org.freedesktop.portal.Request"_s, u"Response"_s, request, SLOT(respond(uint, QVariantMap)));
    followPortals(bus, request, SLOT(followOwner(QString, QString, QString)));
    options.insert(u"handle_token"_s, token);
    auto question = portalCall(interface, method);
    question.setArguments(arguments + QVariantList { options });
    callBus(bus, question, request, [request](const QDBusMessage& answer) {
        if (answer.type() == QDBusMessage::ErrorMessage)
            request->end({});
    });
}

void askPortalVersion(const QDBusConnection& bus, const QString& interface, QObject* receiver,
    std::function<void(uint)> answered)
{
    auto question = portalCall(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << interface << u"version"_s;
    callBus(bus, question, receiver, [answered = std::move(answered)](const QDBusMessage& answer) {
        const QDBusReply<QDBusVariant> version = answer;
        answered(version.isValid() ? version.value().variant().toUInt() : 0);
    });
}

void followPortals(const QDBusConnection& bus, QObject* receiver, const char* slot)
{
    followBusSignal(bus, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameOwnerChanged"_s,
        receiver, slot, { portalName });
}

QString portalToken()
{
    return u"nimbarrow"_s + QUuid::createUuid().toString(QUuid::Id128);
}

void introduceToPortals(const QDBusConnection& bus)
{
    auto introduced = portalCall(u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    introduced << u"ua.tessak.Nimbarrow"_s << QVariantMap();
    bus.send(introduced);
}

QDBusMessage portalCall(const QString& interface, const QString& method)
{
    return QDBusMessage::createMethodCall(portalName, desktopPortalPath, interface, method);
}

} // namespace nimbarrow

#include "PortalRequest.moc"
