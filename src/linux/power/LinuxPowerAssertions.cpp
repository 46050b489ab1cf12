#include "linux/power/LinuxPowerAssertions.h"

#include "linux/power/BusInhibition.h"
#include "linux/session/PortalRequest.h"

#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

const QString program = u"Nimbarrow"_s;

const QString screenSaver = u"org.freedesktop.ScreenSaver"_s;
const QString loginManager = u"org.freedesktop.login1"_s;

/// Given back by a call that nobody waits for.
class CallGrant final : public InhibitionService::Grant {
public:
    CallGrant(QDBusConnection bus, QDBusMessage call)
        : m_bus(std::move(bus))
        , m_call(std::move(call))
    {
    }

    void release() override { m_bus.send(m_call); }

private:
    QDBusConnection m_bus;
    QDBusMessage m_call;
};

/// In force until the last copy of the descriptor is closed.
class DescriptorGrant final : public InhibitionService::Grant {
public:
    explicit DescriptorGrant(const QDBusUnixFileDescriptor& descriptor)
        : m_descriptor(descriptor)
    {
    }

private:
    QDBusUnixFileDescriptor m_descriptor;
};

InhibitionService screenSaverOf(const QDBusConnection& bus)
{
    const auto call = [](const QString& method) {
        return QDBusMessage::createMethodCall(
            screenSaver, u"/org/freedesktop/ScreenSaver"_s, screenSaver, method);
    };
    return { .bus = bus,
        .name = screenSaver,
        .question =
            [call](const QString& reason) {
                auto question = call(u"Inhibit"_s);
                question << program << reason;
                return question;
            },
        .grant = [bus, call](const QDBusMessage& answer) -> std::unique_ptr<InhibitionService::Grant> {
            const auto cookie = answer.arguments().value(0);
            if (cookie.metaType() != QMetaType::fromType<uint>())
                return nullptr;
            auto release = call(u"UnInhibit"_s);
            // A service that has ended has forgotten it.
            release.setAutoStartService(false);
            return std::make_unique<CallGrant>(bus, release << cookie);
        } };
}

InhibitionService portalOf(const QDBusConnection& bus)
{
    constexpr uint idle = 8;
    return { .bus = bus,
        .name = portalService,
        .question =
            [](const QString& reason) {
                auto question = portalCall(u"org.freedesktop.portal.Inhibit"_s, u"Inhibit"_s);
                question << QString() << idle << QVariantMap { { u"reason"_s, reason } };
                return question;
            },
        .grant = [bus](const QDBusMessage& answer) -> std::unique_ptr<InhibitionService::Grant> {
            const auto request = answer.arguments().value(0).value<QDBusObjectPath>().path();
            if (request.isEmpty())
                return nullptr;
            return std::make_unique<CallGrant>(bus, portalClosing(request, u"Request"_s));
        } };
}

InhibitionService loginManagerOf(const QDBusConnection& bus)
{
    return { .bus = bus,
        .name = loginManager,
        .question =
            [](const QString& reason) {
                auto question = QDBusMessage::createMethodCall(loginManager, u"/org/freedesktop/login1"_s,
                    u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s);
                question << u"sleep:idle"_s << program << reason << u"block"_s;
                return question;
            },
        .grant = [](const QDBusMessage& answer) -> std::unique_ptr<InhibitionService::Grant> {
            const auto descriptor = answer.arguments().value(0).value<QDBusUnixFileDescriptor>();
            if (!descriptor.isValid())
                return nullptr;
            return std::make_unique<DescriptorGrant>(descriptor);
        } };
}

class Holder final : public QObject, public PowerAssertions::Assertion {
public:
    Holder(BusInhibition& inhibition, const QString& name, std::function<void()> failed)
        : m_inhibition(&inhibition)
    {
        // Dropping the assertion inside `failed` ends this object, so it runs from a copy.
        connect(&inhibition, &BusInhibition::refused, this, [failed = std::move(failed)] {
            const auto call = failed;
            call();
        });
        inhibition.hold(name);
    }

    ~Holder() override
    {
        if (m_inhibition)
            m_inhibition->letGo();
    }
    Q_DISABLE_COPY_MOVE(Holder)

private:
    QPointer<BusInhibition> m_inhibition;
};

} // namespace

LinuxPowerAssertions::LinuxPowerAssertions(const std::optional<QDBusConnection>& session,
    const std::optional<QDBusConnection>& system, Substitute displaySubstitute, Scheduler& scheduler)
{
    std::vector<InhibitionService> services;
    if (session)
        services = { screenSaverOf(*session), portalOf(*session) };
    if (!services.empty() || displaySubstitute)
        m_displaySleep = std::make_unique<BusInhibition>(services, std::move(displaySubstitute), scheduler);
    if (system) {
        m_systemSleep = std::make_unique<BusInhibition>(
            std::vector { loginManagerOf(*system) }, Substitute(), scheduler);
    }
}

LinuxPowerAssertions::~LinuxPowerAssertions() = default;

std::unique_ptr<PowerAssertions::Assertion> LinuxPowerAssertions::create(
    Type type, const QString& name, std::function<void()> failed)
{
    const auto& inhibition = type == Type::PreventUserIdleDisplaySleep ? m_displaySleep : m_systemSleep;
    if (!inhibition)
        return nullptr;
    return std::make_unique<Holder>(*inhibition, name, std::move(failed));
}

} // namespace nimbarrow
