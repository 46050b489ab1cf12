#include "clipboard/ClipboardItem.h"

#include "preferences/L10n.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

bool isLineBreak(QChar character)
{
    const auto code = character.unicode();
    return (code >= 0x0a && code <= 0x0d) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

bool isHorizontalSpace(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

// Every line break stands alone or behind another one, so looking at single code units splits no character.
QStringView firstLine(QStringView text)
{
    const auto* const begin = std::find_if_not(text.begin(), text.end(), isLineBreak);
    return { begin, std::find_if(begin, text.end(), isLineBreak) };
}

QStringView withoutSpaceAtEnds(QStringView text)
{
    while (!text.isEmpty() && isHorizontalSpace(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isHorizontalSpace(text.back()))
        text.chop(1);
    return text;
}

} // namespace

QString ClipboardItem::symbol() const
{
    switch (kind) {
    case Kind::Text: return u"text.alignleft"_s;
    case Kind::Link: return u"link"_s;
    case Kind::Image: return isScreenshot ? u"camera.viewfinder"_s : u"photo"_s;
    case Kind::Files: return fileUrls().size() == 1 ? u"doc"_s : u"doc.on.doc"_s;
    }
    Q_UNREACHABLE();
    return {};
}

QString ClipboardItem::kindLabel() const
{
    switch (kind) {
    case Kind::Text: return L10n::text(L10n::Key::KindText);
    case Kind::Link: return L10n::text(L10n::Key::KindLink);
    case Kind::Image: return L10n::text(isScreenshot ? L10n::Key::KindScreenshot : L10n::Key::KindImage);
    case Kind::Files: return L10n::text(fileUrls().size() == 1 ? L10n::Key::KindFile : L10n::Key::KindFiles);
    }
    Q_UNREACHABLE();
    return {};
}

std::optional<QString> ClipboardItem::summary() const
{
    switch (kind) {
    case Kind::Text: return withoutSpaceAtEnds(firstLine(text ? *text : QStringView())).toString();
    case Kind::Link: {
        const auto link = linkUrl();
        return link && !link->host().isEmpty() ? link->host() : text;
    }
    case Kind::Image: return imagePath ? std::optional(QFileInfo(*imagePath).fileName()) : std::nullopt;
    case Kind::Files: {
        const auto paths = filePaths.value_or(QStringList());
        return paths.size() == 1 ? QFileInfo(paths.first()).fileName() : L10n::files(paths.size());
    }
    }
    Q_UNREACHABLE();
    return {};
}

QList<QUrl> ClipboardItem::fileUrls() const
{
    QList<QUrl> urls;
    for (const auto& path : filePaths.value_or(QStringList()))
        urls << (path.startsWith("file:"_L1) ? QUrl(path) : QUrl::fromLocalFile(path));
    return urls;
}

std::optional<QUrl> ClipboardItem::linkUrl() const
{
    if (kind != Kind::Link || !text)
        return std::nullopt;
    QUrl url(*text);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

std::optional<QUrl> ClipboardItem::dragUrl() const
{
    if (imagePath)
        return QUrl::fromLocalFile(*imagePath);
    if (const auto files = fileUrls(); !files.isEmpty())
        return files.first();
    return linkUrl();
}

QList<ShareItem> ClipboardItem::shareItems() const
{
    QList<ShareItem> items;
    switch (kind) {
    case Kind::Text:
    case Kind::Link:
        if (const auto link = linkUrl())
            items << *link;
        else if (text)
            items << *text;
        break;
    case Kind::Image:
        if (imagePath)
            items << QUrl::fromLocalFile(*imagePath);
        break;
    case Kind::Files:
        for (const auto& url : fileUrls())
            items << url;
        break;
    }
    return items;
}

QString storedFile(const QUrl& file)
{
    auto path = file.toLocalFile();
    if (path.contains(QChar::ReplacementCharacter))
        path = file.toString(QUrl::FullyEncoded);
    return path.size() > 1 && path.endsWith(u'/') ? path.chopped(1) : path;
}

QString rawValue(ClipboardItem::Kind kind)
{
    switch (kind) {
    case ClipboardItem::Kind::Text: return u"text"_s;
    case ClipboardItem::Kind::Link: return u"link"_s;
    case ClipboardItem::Kind::Image: return u"image"_s;
    case ClipboardItem::Kind::Files: return u"files"_s;
    }
    Q_UNREACHABLE();
    return {};
}

} // namespace nimbarrow
