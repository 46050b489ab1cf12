#include "linux/pasteboard/OfferReader.h"

#include "linux/pasteboard/MimeTypes.h"

#include <algorithm>

namespace nimbarrow {

using mimetypes::Form;

OfferReader::OfferReader(const QStringList& targets)
{
    m_snapshot.types = mimetypes::pasteboardTypesOf(targets);
    const bool marked = std::any_of(targets.begin(), targets.end(),
        [](const QString& target) { return mimetypes::formOf(target) == Form::Mark; });
    if (marked)
        return;
    for (const auto form : { Form::FileList, Form::Image, Form::Text, Form::Link })
        m_wanted << mimetypes::bestFirst(targets, form);
}

void OfferReader::take(const QByteArray& bytes)
{
    const auto target = m_wanted.takeFirst();
    if (bytes.isEmpty())
        return;
    switch (mimetypes::formOf(target)) {
    case Form::FileList:
    case Form::Link: takeUrls(target, bytes); break;
    case Form::Image:
        m_snapshot.bytes.insert(mimetypes::pasteboardTypeOf(target), bytes);
        m_wanted.clear();
        break;
    case Form::Text:
        m_snapshot.string = mimetypes::textFrom(target, bytes);
        m_wanted.clear();
        break;
    case Form::Mark:
    case Form::Other: break;
    }
}

void OfferReader::takeUrls(const QString& target, const QByteArray& bytes)
{
    const auto urls = mimetypes::urlsFrom(target, bytes);
    if (urls.isEmpty())
        return;
    m_snapshot.urls = urls;
    const bool files
        = std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
    const auto type = (files ? pasteboardtype::fileUrl : pasteboardtype::url).toString();
    // Only the content tells whether a list of addresses is one of files.
    if (!files)
        m_snapshot.types.removeAll(pasteboardtype::fileUrl.toString());
    if (!m_snapshot.types.contains(type))
        m_snapshot.types << type;
    m_snapshot.bytes.insert(type, bytes);
    if (files) {
        m_wanted.clear();
    } else {
        // The other lists say the same again; an image or a text is still better than an address.
        m_wanted.removeIf([](const QString& left) {
            const auto form = mimetypes::formOf(left);
            return form == Form::FileList || form == Form::Link;
        });
    }
}

} // namespace nimbarrow
