#include "linux/pasteboard/MimeDropReader.h"

#include "linux/pasteboard/MimeContent.h"
#include "linux/pasteboard/MimeTypes.h"

#include <QMimeData>

namespace nimbarrow {

QStringList MimeDropReader::types(const QMimeData& drag) const
{
    return mimetypes::pasteboardTypesOf(drag.formats());
}

std::unique_ptr<PasteboardContent> MimeDropReader::read(const QMimeData& drop) const
{
    return std::make_unique<MimeContent>(drop);
}

} // namespace nimbarrow
