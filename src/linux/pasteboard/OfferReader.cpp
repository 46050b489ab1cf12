#include "linux/pasteboard/OfferReader.h"

#include "linux/pasteboard/MimeTypes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

using mimetypes::Form;

namespace {

// A picture that stands in its own address has a longer one, and begins like this.
constexpr qsizetype longestAddress = 65'536;

/// Nothing, or one address: what comes with a picture to say where it is from.
bool isAddressAtMost(QStringView text)
{
    const auto line = text.trimmed();
    if (line.isEmpty() || line.startsWith("data:"_L1))
        return true;
    const auto isSpace = [](QChar character) { return character.isSpace(); };
    if (line.size() > longestAddress || std::any_of(line.begin(), line.end(), isSpace))
        return false;
    const QUrl url(line.toString());
    return url.isValid() && line.contains("://"_L1) && !url.scheme().isEmpty();
}

} // namespace

OfferReader::OfferReader(const QStringList& targets)
{
    m_snapshot.types = mimetypes::pasteboardTypesOf(targets);
    const bool marked = std::any_of(targets.begin(), targets.end(),
        [](const QString& target) { return mimetypes::formOf(target) == Form::Mark; });
    if (marked)
        return;
    // Whether a picture is the content or only how a text looks is known once the text has been read.
    for (const auto form : { Form::FileList, Form::Text, Form::Image, Form::Link })
        m_wanted << mimetypes::bestFirst(targets, form);
}

qsizetype OfferReader::room(const PasteboardLimits& limits) const
{
    return mimetypes::formOf(next()) == Form::Image ? limits.imageBytes : limits.textBytes;
}

void OfferReader::take(const QByteArray& bytes, bool cut)
{
    const auto target = m_wanted.takeFirst();
    const auto form = mimetypes::formOf(target);
    // The beginning of a long text is worth keeping; the beginning of an image or a list is not.
    if (cut && form != Form::Text) {
        // A list's other forms would be that list as a text.
        if (form == Form::FileList)
            m_wanted.clear();
        return;
    }
    if (bytes.isEmpty())
        return;
    switch (form) {
    case Form::FileList:
    case Form::Link: takeUrls(target, bytes); break;
    case Form::Image:
        m_snapshot.bytes.insert(mimetypes::pasteboardTypeOf(target), bytes);
        m_wanted.clear();
        break;
    case Form::Text: takeText(mimetypes::textFrom(target, bytes)); break;
    case Form::Mark:
    case Form::Other: break;
    }
}

void OfferReader::takeText(const QString& text)
{
    const bool address = isAddressAtMost(text);
    if (!address) {
        m_snapshot.types.removeIf([](const QString& type) { return mimetypes::isImageType(type); });
        m_wanted.clear();
    }
    if (address && text.trimmed().isEmpty())
        return;
    m_snapshot.string = text;
    m_wanted.removeIf([](const QString& left) { return mimetypes::formOf(left) != Form::Image; });
}

void OfferReader::takeUrls(const QString& target, const QByteArray& bytes)
{
    const auto urls = mimetypes::urlsFrom(target, bytes);
    if (urls.isEmpty())
        return;
    m_snapshot.urls = urls;
    const bool files = std::any_of(urls.begin(), urls.end(), PasteboardContent::isFile);
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
