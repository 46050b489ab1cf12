#pragma once

#include "linux/pasteboard/PasteboardLimits.h"

#include <QByteArray>

#include <list>
#include <poll.h>
#include <vector>

namespace nimbarrow {

/// Contents on their way to those who paste, each through a file of its own. Nobody waits for anybody who
/// does not read.
class PipeDeliveries {
public:
    using Instant = PasteboardInstant;

    PipeDeliveries() = default;
    ~PipeDeliveries();
    Q_DISABLE_COPY_MOVE(PipeDeliveries)

    /// Closes the file when the other has everything, has gone, or has read nothing for too long.
    void add(int file, const QByteArray& bytes);

    [[nodiscard]] bool isEmpty() const { return m_deliveries.empty(); }
    /// Adds what it waits for.
    void addTo(std::vector<pollfd>& sources) const;
    /// Gives everybody what they have room for.
    void send();
    void expire(Instant now);
    [[nodiscard]] Instant deadline() const;

private:
    struct Delivery {
        int file;
        QByteArray bytes;
        qsizetype sent;
        Instant stallEnd;
    };
    using Deliveries = std::list<Delivery>;

    /// True when it is over.
    static bool sendNext(Delivery& delivery);
    Deliveries::iterator drop(Deliveries::iterator delivery);

    Deliveries m_deliveries;
};

} // namespace nimbarrow
