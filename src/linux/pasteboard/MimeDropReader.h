#pragma once

#include "platform/DropReader.h"

namespace nimbarrow {

/// Understands a drag by the MIME types that it offers.
class MimeDropReader final : public DropReader {
public:
    [[nodiscard]] QStringList types(const QMimeData& drag) const override;
    [[nodiscard]] std::unique_ptr<PasteboardContent> read(const QMimeData& drop) const override;
};

} // namespace nimbarrow
