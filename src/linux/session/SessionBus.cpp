#include "linux/session/SessionBus.h"

#include <QStringList>

#include <cstddef>
#include <cstring>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr int patience = 1000; // ms

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
            if (part == "runtime=yes"_L1)
                return qgetenv("XDG_RUNTIME_DIR") + "/bus";
        }
    }
    return {};
}

/// Whether a message bus greets us there. libdbus would wait nearly half a minute to learn it.
bool answers(const QByteArray& name)
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || static_cast<std::size_t>(name.size()) >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    // An abstract name ends where its length says, a path with a zero byte.
    const auto length
        = offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(name.size()) + (name.front() ? 1U : 0U);

    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return false;
    bool greeted = false;
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(length)) == 0) {
        // A zero byte opens the conversation; an empty AUTH asks what the bus would accept.
        constexpr std::string_view hello("\0AUTH\r\n", 7);
        pollfd watched { socket, POLLIN, 0 };
        char first = 0;
        greeted = ::send(socket, hello.data(), hello.size(), MSG_NOSIGNAL) == ssize_t(hello.size())
            && ::poll(&watched, 1, patience) == 1 && ::read(socket, &first, 1) == 1 && first == 'R';
    }
    ::close(socket);
    return greeted;
}

struct Address {
    const char* variable;
    QString usual;
};

const Address& sessionAddress()
{
    static const Address address { "DBUS_SESSION_BUS_ADDRESS", u"unix:runtime=yes"_s };
    return address;
}

bool answers(const Address& address)
{
    const auto given = qEnvironmentVariable(address.variable);
    return answers(socketName(given.isEmpty() ? address.usual : given));
}

std::optional<QDBusConnection> open(const Address& address, QDBusConnection (*connected)())
{
    if (!answers(address))
        return {};
    auto bus = connected();
    if (!bus.isConnected())
        return {};
    return bus;
}

} // namespace

std::optional<QDBusConnection> liveSessionBus()
{
    static const auto bus = open(sessionAddress(), &QDBusConnection::sessionBus);
    return bus;
}

bool sessionBusAnswers()
{
    return answers(sessionAddress());
}

std::optional<QDBusConnection> liveSystemBus()
{
    static const auto bus
        = open({ "DBUS_SYSTEM_BUS_ADDRESS", u"unix:path=/var/run/dbus/system_bus_socket"_s },
            &QDBusConnection::systemBus);
    return bus;
}

} // namespace nimbarrow
