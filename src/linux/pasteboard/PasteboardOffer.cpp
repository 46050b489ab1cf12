#include "linux/pasteboard/PasteboardOffer.h"

#include "linux/pasteboard/MimeTypes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

PasteboardOffer::PasteboardOffer(const QList<PasteboardObject>& objects)
{
    QStringList texts;
    for (const auto& object : objects) {
        if (object.string)
            texts << *object.string;
        if (object.url)
            m_snapshot.urls << *object.url;
        if (object.png && !m_png)
            m_png = object.png;
    }
    if (!texts.isEmpty())
        m_snapshot.string = texts.join(u'\n');
    offerUrls();
    offerText();
}

void PasteboardOffer::offerUrls()
{
    const auto& urls = m_snapshot.urls;
    if (urls.isEmpty())
        return;
    QByteArrayList encoded;
    QStringList plain;
    for (const auto& url : urls) {
        encoded << url.toEncoded();
        plain << (url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded));
    }
    const auto list = encoded.join("\r\n") + "\r\n";
    m_content.insert(mimetypes::uriList.toUtf8(), list);
    const bool files
        = std::all_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
    if (files) {
        const auto copied = "copy\n" + encoded.join('\n');
        m_content.insert(mimetypes::gnomeFiles.toUtf8(), copied);
        m_content.insert(mimetypes::mateFiles.toUtf8(), copied);
        m_content.insert(mimetypes::kdeFiles.toUtf8(), list);
    }
    const auto type = (files ? pasteboardtype::fileUrl : pasteboardtype::url).toString();
    m_snapshot.types << type;
    m_snapshot.bytes.insert(type, list);
    // Beside an image the path would be what editors of rich text paste.
    if (!m_snapshot.string && !m_png)
        m_snapshot.string = plain.join(u'\n');
}

void PasteboardOffer::offerText()
{
    if (!m_snapshot.string)
        return;
    m_snapshot.types << pasteboardtype::string.toString();
    const auto utf8 = m_snapshot.string->toUtf8();
    for (const auto target : { mimetypes::utf8String, mimetypes::utf8Text, mimetypes::plainText })
        m_content.insert(target.toUtf8(), utf8);
    m_content.insert("TEXT", utf8);
    m_content.insert(mimetypes::latin1String.toUtf8(), m_snapshot.string->toLatin1());
}

} // namespace nimbarrow
