#pragma once

#include "platform/DropReader.h"

namespace nimbarrow {

/// Reads what is dropped on the program's surfaces through Qt.
class WaylandDropReader final : public DropReader {
public:
    [[nodiscard]] QStringList types(const QMimeData& drag) const override;
    [[nodiscard]] std::unique_ptr<PasteboardContent> read(const QMimeData& drop) const override;
};

} // namespace nimbarrow
