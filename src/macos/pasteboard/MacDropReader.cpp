#include "macos/pasteboard/MacDropReader.h"

#include "macos/pasteboard/DroppedContent.h"

namespace nimbarrow {

QStringList MacDropReader::types(const QMimeData& drag) const
{
    return DroppedContent::typesOf(drag);
}

std::unique_ptr<PasteboardContent> MacDropReader::read(const QMimeData& drop) const
{
    return std::make_unique<DroppedContent>(drop);
}

} // namespace nimbarrow
