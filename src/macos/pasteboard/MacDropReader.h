#pragma once

#include "macos/pasteboard/DroppedContent.h"
#include "platform/DropReader.h"

namespace nimbarrow {

/// Understands a drag as Qt has translated it from this system's types.
class MacDropReader final : public DropReader {
public:
    [[nodiscard]] QStringList types(const QMimeData& drag) const override
    {
        return DroppedContent::typesOf(drag);
    }
    void read(const QMimeData& drop, const Done& done) override { done(DroppedContent(drop)); }
};

} // namespace nimbarrow
