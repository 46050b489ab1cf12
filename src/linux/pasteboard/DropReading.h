#pragma once

#include "linux/pasteboard/OfferReader.h"
#include "linux/pasteboard/PipeTransfer.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <poll.h>
#include <vector>

namespace nimbarrow {

/// Reads what has been dropped. Whoever dragged it may forget it as soon as the drop is over, so each form
/// that may be needed is asked for at once. Made on one thread, and may be used on another.
class DropReading {
public:
    using Instant = PasteboardInstant;
    /// Has the owner write one form into a file, which stays the caller's.
    using Request = std::function<void(const QByteArray& type, int file)>;

    DropReading(const QStringList& types, const PasteboardLimits& limits, const Request& request);

    /// Adds what it waits for.
    void addTo(std::vector<pollfd>& sources) const;
    /// Takes what has come.
    void receive();
    void expire(Instant now);
    [[nodiscard]] Instant deadline() const;

    /// The content, once, when all of it that is needed is there.
    [[nodiscard]] std::optional<PasteboardSnapshot> takeResult();
    [[nodiscard]] bool finished() const { return m_finished; }
    /// True when nothing is expected of the owner any more.
    [[nodiscard]] bool over() const;

private:
    OfferReader m_reader;
    std::map<QString, std::unique_ptr<PipeTransfer>> m_transfers;
    bool m_finished = false;
};

} // namespace nimbarrow
