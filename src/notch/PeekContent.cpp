#include "notch/PeekContent.h"

#include "clipboard/ClipboardItem.h"
#include "nowplaying/NowPlayingTrack.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QString withoutBlanksAround(const QString& text)
{
    const auto isBlank = [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; };
    qsizetype begin = 0;
    auto end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

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
    const auto summary = withoutBlanksAround(item.summary().value_or(QString()));
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
