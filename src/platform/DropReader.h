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

    /// What was dropped, read whole; it outlives the drop's event.
    [[nodiscard]] virtual std::unique_ptr<PasteboardContent> read(const QMimeData& drop) const = 0;
};

} // namespace nimbarrow
