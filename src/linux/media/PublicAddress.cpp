#include "linux/media/PublicAddress.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <ifaddrs.h>
#include <initializer_list>
#include <memory>
#include <netinet/in.h>
#include <optional>

namespace nimbarrow {

namespace {

/// An IPv4 address is here as IPv6 wraps it.
using Address = std::array<std::uint8_t, 16>;

constexpr Address wrapped { 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff };
constexpr unsigned wrappedBits = 96;

struct Network {
    Address address;
    unsigned bits;
};

constexpr Network v4(std::uint8_t a, std::uint8_t b, std::uint8_t c, unsigned bits)
{
    auto address = wrapped;
    address[12] = a;
    address[13] = b;
    address[14] = c;
    return { address, wrappedBits + bits };
}

constexpr Network v6(std::initializer_list<std::uint16_t> groups, unsigned bits)
{
    Address address {};
    std::size_t at = 0;
    for (const auto group : groups) {
        address[at++] = static_cast<std::uint8_t>(group >> 8);
        address[at++] = static_cast<std::uint8_t>(group & 0xff);
    }
    return { address, bits };
}

// As the registries of special addresses list them.
constexpr std::array specialV4 {
    v4(0, 0, 0, 8), // this network
    v4(10, 0, 0, 8), // private
    v4(100, 64, 0, 10), // behind a provider's translation
    v4(127, 0, 0, 8), // this machine
    v4(169, 254, 0, 16), // link-local
    v4(172, 16, 0, 12), // private
    v4(192, 0, 0, 24), // protocols
    v4(192, 0, 2, 24), // documentation
    v4(192, 88, 99, 24), // relays into IPv6
    v4(192, 168, 0, 16), // private
    v4(198, 18, 0, 15), // benchmarks
    v4(198, 51, 100, 24), // documentation
    v4(203, 0, 113, 24), // documentation
    v4(224, 0, 0, 4), // multicast
    v4(240, 0, 0, 4), // reserved, and broadcast
};
constexpr std::array specialV6 {
    v6({ 0x2001 }, 23), // protocols, tunnels
    v6({ 0x2001, 0x0db8 }, 32), // documentation
    v6({ 0x2002 }, 16), // tunnels to any IPv4 address
    v6({ 0x3fff }, 20), // documentation
};
// Every other one is for this machine, its link or site, for many at once, or for nothing yet.
constexpr auto globalV6 = v6({ 0x2000 }, 3);
// How a network of IPv6 alone reaches the others; the resolver gives such addresses for public names.
constexpr auto translated = v6({ 0x0064, 0xff9b }, wrappedBits);

bool matches(const Address& a, const Address& b, unsigned bits)
{
    const auto whole = bits / 8;
    if (!std::equal(a.begin(), a.begin() + whole, b.begin()))
        return false;
    const auto mask = static_cast<std::uint8_t>(0xff00U >> bits % 8);
    return bits % 8 == 0 || ((a[whole] ^ b[whole]) & mask) == 0;
}

bool contains(const Network& network, const Address& address)
{
    return matches(network.address, address, network.bits);
}

std::optional<Address> addressOf(const sockaddr& any)
{
    if (any.sa_family == AF_INET) {
        sockaddr_in in {};
        std::memcpy(&in, &any, sizeof in);
        auto address = wrapped;
        std::memcpy(address.data() + wrappedBits / 8, &in.sin_addr, sizeof in.sin_addr);
        return address;
    }
    if (any.sa_family == AF_INET6) {
        sockaddr_in6 in {};
        std::memcpy(&in, &any, sizeof in);
        Address address {};
        std::memcpy(address.data(), &in.sin6_addr, sizeof in.sin6_addr);
        return address;
    }
    return {};
}

/// With the IPv4 address that it stands for, where there is one.
Address unwrapped(Address address)
{
    if (contains(translated, address))
        std::copy_n(wrapped.begin(), wrappedBits / 8, address.begin());
    return address;
}

bool isIn(const Address& address, const ifaddrs& interface)
{
    if (interface.ifa_addr == nullptr || interface.ifa_netmask == nullptr)
        return false;
    const auto own = addressOf(*interface.ifa_addr);
    auto mask = addressOf(*interface.ifa_netmask);
    if (!own || !mask)
        return false;
    if (interface.ifa_addr->sa_family == AF_INET)
        std::fill_n(mask->begin(), wrappedBits / 8, std::uint8_t { 0xff });
    // A tunnel for everything is no network of its own.
    const auto ignored = interface.ifa_addr->sa_family == AF_INET ? wrappedBits / 8 : 0;
    if (std::all_of(mask->begin() + ignored, mask->end(), [](auto byte) { return byte == 0; }))
        return false;
    for (std::size_t i = 0; i < address.size(); ++i) {
        if (((address[i] ^ (*own)[i]) & (*mask)[i]) != 0)
            return false;
    }
    return true;
}

} // namespace

bool isPublicAddress(const sockaddr& any)
{
    const auto given = addressOf(any);
    if (!given)
        return false;
    const auto address = unwrapped(*given);
    const auto holds = [&address](const Network& network) { return contains(network, address); };
    if (matches(address, wrapped, wrappedBits))
        return std::none_of(specialV4.begin(), specialV4.end(), holds);
    return holds(globalV6) && std::none_of(specialV6.begin(), specialV6.end(), holds);
}

bool isInOwnNetwork(const sockaddr& any)
{
    const auto given = addressOf(any);
    ifaddrs* interfaces = nullptr;
    if (!given || ::getifaddrs(&interfaces) != 0)
        return true;
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> guard(interfaces, &::freeifaddrs);
    const auto address = unwrapped(*given);
    for (const auto* interface = interfaces; interface != nullptr; interface = interface->ifa_next) {
        if (isIn(address, *interface))
            return true;
    }
    return false;
}

} // namespace nimbarrow
