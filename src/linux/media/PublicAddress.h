#pragma once

struct sockaddr;

namespace nimbarrow {

/// Whether an address belongs to the public internet: no machine of its own, no local network, none of the
/// ranges set apart for something else. What only wraps an IPv4 address is judged by that one. False for
/// what is no IP address. Pure.
[[nodiscard]] bool isPublicAddress(const sockaddr& any);

/// Whether an address lies in a network that this computer has a place in, which with IPv6 is a public one
/// as a rule. Asks the kernel; true when it does not answer.
[[nodiscard]] bool isInOwnNetwork(const sockaddr& any);

} // namespace nimbarrow
