#include "linux/pasteboard/MimeContent.h"

#include "linux/pasteboard/OfferReader.h"

#include <QMimeData>

namespace nimbarrow {

MimeContent::MimeContent(const QMimeData& mime)
{
    OfferReader reader(mime.formats());
    while (!reader.next().isEmpty())
        reader.take(mime.data(reader.next()));
    m_snapshot = reader.snapshot();
}

} // namespace nimbarrow
