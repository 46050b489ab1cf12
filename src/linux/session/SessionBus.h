#pragma once

#include <QDBusConnection>

#include <optional>

namespace nimbarrow {

/// The session's message bus, or none where there is no bus that answers. Asked once, at the first call; it
/// takes a moment at most, also when what stands behind the address is frozen, and never starts a bus.
[[nodiscard]] std::optional<QDBusConnection> liveSessionBus();

/// Whether a bus answers at the session's address now. Waits for a second at most; asks each time.
[[nodiscard]] bool sessionBusAnswers();

/// The message bus of the whole computer; asked as the session's is.
[[nodiscard]] std::optional<QDBusConnection> liveSystemBus();

/// Keeps Qt, which waits for minutes, from a bus that does not answer, and from one whose accessibility
/// service does not. To be called before the application object is made; takes a second at most.
/// `accessibilityAddress` is what the display says of that service; it may be empty.
void hideSilentBuses(const QString& accessibilityAddress);

/// For the rest of the process, once the application object is made: what was silent may speak by now.
void showHiddenBuses();

} // namespace nimbarrow
