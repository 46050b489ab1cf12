#include "linux/pasteboard/WaylandDropReader.h"

#include "linux/pasteboard/MimeTypes.h"
#include "linux/pasteboard/OfferReader.h"

#include <QMimeData>

namespace nimbarrow {

QStringList WaylandDropReader::types(const QMimeData& drag) const
{
    return mimetypes::pasteboardTypesOf(drag.formats());
}

std::unique_ptr<PasteboardContent> WaylandDropReader::read(const QMimeData& drop) const
{
    const PasteboardLimits limits;
    OfferReader reader(drop.formats());
    while (!reader.next().isEmpty()) {
        // Qt gives up a second after the last byte has come.
        auto bytes = drop.data(reader.next());
        const auto room = reader.room(limits);
        const bool cut = bytes.size() > room;
        bytes.truncate(room);
        reader.take(bytes, cut);
    }
    return std::make_unique<SnapshotContent>(reader.snapshot());
}

} // namespace nimbarrow
