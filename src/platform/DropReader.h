#pragma once

#include "platform/Pasteboard.h"
#include "platform/Port.h"

#include <functional>

class QMimeData;

namespace nimbarrow {

/// Port: understands what other programs drag over the panel. Main thread.
class DropReader : public Port {
public:
    /// The identifiers of what is offered, without asking for any of the content.
    [[nodiscard]] virtual QStringList types(const QMimeData& drag) const = 0;

    using Done = std::function<void(const PasteboardContent&)>;

    /// Reads what was dropped; for the drop's own event. `done` is called once, at once or when the other
    /// program has given it, whatever is dragged meanwhile; never when the reader is gone by then. What is
    /// not given in time is absent.
    virtual void read(const QMimeData& drop, const Done& done) = 0;
};

} // namespace nimbarrow
