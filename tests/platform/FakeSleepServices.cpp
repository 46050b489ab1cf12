#include "platform/FakeSleepServices.h"

#include <QUuid>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

/// Each a process of its own, as far as the bus can tell.
QDBusConnection newConnection(const QString& address)
{
    return QDBusConnection::connectToBus(address, QUuid::createUuid().toString());
}

constexpr auto everything = QDBusConnection::ExportAllSlots;

} // namespace

FakeScreenSaver::FakeScreenSaver(const QString& address, uint firstCookie)
    : m_bus(newConnection(address))
    , m_nextCookie(firstCookie)
{
    m_bus.connect({}, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameOwnerChanged"_s, this,
        SLOT(followClient(QString, QString, QString)));
    m_bus.registerObject(u"/org/freedesktop/ScreenSaver"_s, this, everything);
    m_bus.registerService(u"org.freedesktop.ScreenSaver"_s);
}

FakeScreenSaver::~FakeScreenSaver()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

uint FakeScreenSaver::Inhibit(const QString& application, const QString& reason)
{
    log << u"Inhibit "_s + application + u": "_s + reason;
    if (!answers)
        setDelayedReply(true);
    else if (refuses)
        sendErrorReply(QDBusError::AccessDenied, u"no"_s);
    else
        held.insert(m_nextCookie, message().service());
    return m_nextCookie++;
}

void FakeScreenSaver::UnInhibit(uint cookie)
{
    log << u"UnInhibit %1"_s.arg(cookie);
    if (held.value(cookie) == message().service())
        held.remove(cookie);
}

void FakeScreenSaver::followClient(const QString& name, const QString& /*oldOwner*/, const QString& newOwner)
{
    if (newOwner.isEmpty())
        held.removeIf([&name](const auto& entry) { return entry.value() == name; });
}

FakeInhibitPortal::FakeInhibitPortal(const QString& address)
    : m_bus(newConnection(address))
{
    m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this, everything);
    m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
}

FakeInhibitPortal::~FakeInhibitPortal()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

QDBusObjectPath FakeInhibitPortal::Inhibit(const QString& /*window*/, uint flags, const QVariantMap& options)
{
    ++asked;
    const auto path = u"/org/freedesktop/portal/desktop/request/1_7/t%1"_s.arg(asked);
    const auto entry = u"%1 %2"_s.arg(flags).arg(options.value(u"reason"_s).toString());
    auto* const request = new FakePortalRequest(*this, entry);
    request->setParent(this);
    m_bus.registerObject(path, request, everything);
    held << entry;
    return QDBusObjectPath(path);
}

FakePortalRequest::FakePortalRequest(FakeInhibitPortal& portal, QString entry)
    : m_portal(portal)
    , m_entry(std::move(entry))
{
}

void FakePortalRequest::Close()
{
    m_portal.held.removeOne(m_entry);
    deleteLater();
}

} // namespace nimbarrow
