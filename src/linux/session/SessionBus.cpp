#include "linux/session/SessionBus.h"

#include "linux/session/BusCalls.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <tuple>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(logSession, "ua.tessak.Nimbarrow.session")

constexpr auto longestGreeting = std::chrono::milliseconds(1000);
constexpr int longestAnswer = 500; // ms

/// The first address of a Unix socket, as the kernel wants it; with a leading zero byte when it is abstract.
QByteArray socketName(const QString& addresses)
{
    for (const auto& address : addresses.split(u';')) {
        if (!address.startsWith("unix:"_L1))
            continue;
        for (const auto& part : address.mid(5).split(u',')) {
            auto value = QByteArray::fromPercentEncoding(part.section(u'=', 1).toUtf8());
            if (part.startsWith("path="_L1))
                return value;
            if (part.startsWith("abstract="_L1))
                return '\0' + value;
        }
    }
    return {};
}

/// A conversation with what may be a message bus. libdbus would wait nearly half a minute to learn it.
class Greeting {
public:
    explicit Greeting(const QByteArray& name)
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        if (name.isEmpty() || static_cast<std::size_t>(name.size()) >= sizeof address.sun_path)
            return;
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        // An abstract name ends where its length says, a path with a zero byte.
        const auto length = offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(name.size())
            + (name.front() ? 1U : 0U);
        m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        // A zero byte opens the conversation; an empty AUTH asks what the bus would accept.
        constexpr std::string_view hello("\0AUTH\r\n", 7);
        m_isSent = m_socket >= 0
            && ::connect(
                   m_socket, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(length))
                == 0
            && ::send(m_socket, hello.data(), hello.size(), MSG_NOSIGNAL) == ssize_t(hello.size());
    }
    ~Greeting()
    {
        if (m_socket >= 0)
            ::close(m_socket);
    }
    Q_DISABLE_COPY_MOVE(Greeting)

    [[nodiscard]] bool isAnsweredBy(std::chrono::steady_clock::time_point deadline) const
    {
        if (!m_isSent)
            return false;
        const auto left
            = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd watched { m_socket, POLLIN, 0 };
        char first = 0;
        return ::poll(&watched, 1, static_cast<int>(std::max<qint64>(0, left.count()))) == 1
            && ::read(m_socket, &first, 1) == 1 && first == 'R';
    }

private:
    int m_socket = -1;
    bool m_isSent = false;
};

std::chrono::steady_clock::time_point greetingDeadline()
{
    return std::chrono::steady_clock::now() + longestGreeting;
}

bool answers(const QString& address)
{
    return Greeting(socketName(address)).isAnsweredBy(greetingDeadline());
}

/// A bus of the environment, as it was when it was first asked for.
class Bus {
public:
    Bus(const char* variable, QString name, const QString& usualAddress)
        : m_variable(variable)
        , m_name(std::move(name))
        , m_inherited(qgetenv(variable))
        , m_address(m_inherited.isEmpty() ? usualAddress : QString::fromUtf8(m_inherited))
    {
    }

    [[nodiscard]] const QString& address() const { return m_address; }

    void setAnswers(bool answers)
    {
        m_isKnown = true;
        m_answers = answers;
    }

    [[nodiscard]] const std::optional<QDBusConnection>& connection()
    {
        if (!m_isKnown)
            setAnswers(answers(m_address));
        if (m_answers && !m_connection) {
            m_connection = QDBusConnection::connectToBus(m_address, m_name);
            m_answers = m_connection->isConnected();
            if (!m_answers)
                m_connection.reset();
        }
        return m_connection;
    }

    /// For everything in this process that looks it up, and for libraries that would start a bus where there
    /// is none.
    void hide() const { qputenv(m_variable, "unix:path=/dev/null"); }

    void show() const
    {
        if (m_inherited.isEmpty())
            qunsetenv(m_variable);
        else
            qputenv(m_variable, m_inherited);
    }

private:
    const char* m_variable;
    QString m_name;
    QByteArray m_inherited;
    QString m_address;
    bool m_isKnown = false;
    bool m_answers = false;
    std::optional<QDBusConnection> m_connection;
};

Bus& sessionBus()
{
    static Bus bus("DBUS_SESSION_BUS_ADDRESS", u"nimbarrow-session"_s,
        "unix:path="_L1
            + QString::fromLatin1(
                QUrl::toPercentEncoding(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus"_L1, "/")));
    return bus;
}

Bus& systemBus()
{
    static Bus bus(
        "DBUS_SYSTEM_BUS_ADDRESS", u"nimbarrow-system"_s, u"unix:path=/var/run/dbus/system_bus_socket"_s);
    return bus;
}

/// None when nobody answered in time.
std::optional<QVariant> answerOf(const QDBusConnection& bus, const QDBusMessage& question)
{
    const auto answer = bus.call(question, QDBus::Block, longestAnswer);
    const auto error = QDBusError(answer).type();
    if (error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut)
        return {};
    return answer.arguments().value(0);
}

/// Whether what Qt asks at its start, and waits for, is answered: who wants to know what stands in the
/// windows.
bool accessibilityAnswers(const QDBusConnection& bus, const QString& displaysAddress)
{
    const auto service = u"org.a11y.Bus"_s;
    const auto path = u"/org/a11y/bus"_s;
    const auto environments = qEnvironmentVariable("AT_SPI_BUS_ADDRESS");
    for (const auto& address : { environments, displaysAddress }) {
        if (!socketName(address).isEmpty() && !answers(address))
            return false;
    }
    const auto isThere = answerOf(bus, questionToBus(u"NameHasOwner"_s) << service);
    if (!isThere || !isThere->toBool())
        return isThere.has_value();
    auto status
        = QDBusMessage::createMethodCall(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    status << u"org.a11y.Status"_s << u"IsEnabled"_s;
    if (!answerOf(bus, status))
        return false;
    const auto address
        = answerOf(bus, QDBusMessage::createMethodCall(service, path, service, u"GetAddress"_s));
    return address && (address->toString().isEmpty() || answers(address->toString()));
}

} // namespace

std::optional<QDBusConnection> liveSessionBus()
{
    return sessionBus().connection();
}

bool sessionBusAnswers()
{
    return answers(sessionBus().address());
}

std::optional<QDBusConnection> liveSystemBus()
{
    return systemBus().connection();
}

void hideSilentBuses(const QString& accessibilityAddress)
{
    {
        // Both are greeted before one is waited for.
        const Greeting session(socketName(sessionBus().address()));
        const Greeting system(socketName(systemBus().address()));
        const auto deadline = greetingDeadline();
        sessionBus().setAnswers(session.isAnsweredBy(deadline));
        systemBus().setAnswers(system.isAnsweredBy(deadline));
    }
    const auto session = liveSessionBus();
    const bool isHeard = !session || accessibilityAnswers(*session, accessibilityAddress);
    if (!isHeard)
        qCWarning(
            logSession, "The accessibility service does not answer. Screen readers cannot read the panel.");
    if (!session || !isHeard)
        sessionBus().hide();
    if (!liveSystemBus())
        systemBus().hide();
}

void showHiddenBuses()
{
    // Qt looks once, and remembers.
    std::ignore = QDBusConnection::sessionBus();
    std::ignore = QDBusConnection::systemBus();
    sessionBus().show();
    systemBus().show();
}

} // namespace nimbarrow
