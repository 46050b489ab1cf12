#pragma once

#include "platform/Pasteboard.h"
#include "platform/Port.h"

#include <functional>
#include <memory>

class QMimeData;

namespace nimbarrow {

/// Port: understands what other programs drag over the panel.
class DropReader : public Port {
public:
    /// The identifiers of what is offered, without asking for any of the content.
    [[nodiscard]] virtual QStringList types(const QMimeData& drag) const = 0;

    /// What was dropped; for the drop's own event, which comes once it has been read, so nobody waits here.
    /// What the other program had not given in time is absent. It outlives the event.
    [[nodiscard]] virtual std::unique_ptr<PasteboardContent> read(const QMimeData& drop) const = 0;
};

} // namespace nimbarrow
