#pragma once

#include "platform/DropReader.h"

namespace nimbarrow {

/// Understands a drag as Qt has translated it from this system's types.
class MacDropReader final : public DropReader {
public:
    [[nodiscard]] QStringList types(const QMimeData& drag) const override;
    [[nodiscard]] std::unique_ptr<PasteboardContent> read(const QMimeData& drop) const override;
};

} // namespace nimbarrow
