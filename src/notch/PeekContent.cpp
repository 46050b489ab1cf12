#include "notch/PeekContent.h"

#include "clipboard/ClipboardItem.h"
#include "nowplaying/NowPlayingTrack.h"
#include "text/DisplayLine.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// In UTF-16 units; a notice has room for fewer.
constexpr qsizetype longestLine = 400;

} // namespace

PeekContent PeekContent::make(const QString& symbol, const QString& line)
{
    PeekContent content;
    content.id = QUuid::createUuid();
    content.symbol = symbol;
    content.line = line;
    return content;
}

PeekContent PeekContent::forItem(const ClipboardItem& item)
{
    // A notice shows any number of files as documents; only the history tells one from several.
    const auto symbol = item.kind == ClipboardItem::Kind::Files ? u"doc.on.doc"_s : item.symbol();
    const auto summary = displayLine(item.summary().value_or(QString()), longestLine);
    auto content = make(symbol, summary.isEmpty() ? item.kindLabel() : summary);
    if (item.imagePath)
        content.imageUrl = QUrl::fromLocalFile(*item.imagePath);
    return content;
}

PeekContent PeekContent::forTrack(const NowPlayingTrack& track, const QImage& artwork)
{
    auto content
        = make(u"music.note"_s, track.artist.isEmpty() ? track.title : track.title + u" · "_s + track.artist);
    content.image = artwork;
    return content;
}

} // namespace nimbarrow
