#include "calendar/LinkDetector.h"

#include <QUrlQuery>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow::linkdetector {

namespace {

// Longer ones are no links that anybody could open.
constexpr qsizetype maxLength = 8192;
// A redirect may lead to another one, but not for ever.
constexpr int maxRedirects = 4;

bool isHostCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'.' || c == u'-';
}

bool endsLink(QChar c)
{
    // What is invisible is pasted along, and would be taken for a part of the path.
    return c.isSpace() || c.category() == QChar::Other_Control || c.category() == QChar::Other_Format
        || c == QChar::ObjectReplacementCharacter
        || QStringView(u"<>\"`{}|\\^«»“”„‘’‹›…。，、；：！？（）「」『』【】《》").contains(c);
}

/// The length of the link that begins at `start`, without what only follows it.
qsizetype linkLength(QStringView whole, qsizetype start)
{
    const auto text = whole.sliced(start);
    static constexpr QStringView entities[] { u"&quot;", u"&lt;", u"&gt;", u"&apos;", u"&nbsp;", u"&#34;",
        u"&#39;", u"&#60;", u"&#62;", u"&#x22;", u"&#x27;", u"&#x3c;", u"&#x3e;" };
    qsizetype length = 0;
    qsizetype openRound = 0;
    qsizetype openSquare = 0;
    for (; length < text.size() && !endsLink(text[length]); ++length) {
        const auto rest = text.sliced(length);
        if (rest.startsWith(u'&') && std::ranges::any_of(entities, [rest](QStringView entity) {
                return rest.startsWith(entity, Qt::CaseInsensitive);
            }))
            break;
        // A bracket that was opened before the link closes behind it.
        if (text[length] == u')' && --openRound < 0)
            break;
        if (text[length] == u']' && --openSquare < 0)
            break;
        openRound += text[length] == u'(';
        openSquare += text[length] == u'[';
    }
    // A secret in a link may end in these, so they go only where they stand on both sides of it.
    const auto before = start > 0 ? whole[start - 1] : QChar();
    const auto emphasis = before == u'_' || before == u'~' ? before : QChar(u'*');
    while (
        length > 0 && (QStringView(u".,;:!?'*").contains(text[length - 1]) || text[length - 1] == emphasis))
        --length;
    return length;
}

QUrl parsed(QString link)
{
    if (link.size() > maxLength)
        return {};
    for (const auto ampersand : { "&amp;"_L1, "&#38;"_L1, "&#x26;"_L1 })
        link.replace(ampersand, "&"_L1, Qt::CaseInsensitive);
    QUrl url(link);
    return url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

} // namespace

void visit(QStringView text, const std::function<bool(const QString& host)>& isKnownHost,
    const std::function<bool(const QUrl& link)>& found)
{
    qsizetype place = 0;
    while (place < text.size()) {
        if (!isHostCharacter(text[place])) {
            ++place;
            continue;
        }
        const auto start = place;
        while (place < text.size() && isHostCharacter(text[place]))
            ++place;
        const auto word = text.sliced(start, place - start);
        QUrl link;
        if (text.sliced(place).startsWith("://"_L1)
            && (word.endsWith("http"_L1, Qt::CaseInsensitive)
                || word.endsWith("https"_L1, Qt::CaseInsensitive))) {
            // What is glued to the scheme, as in "Link:https://", is none of the link.
            const auto scheme = word.endsWith("https"_L1, Qt::CaseInsensitive) ? 5 : 4;
            const auto begin = place - scheme;
            const auto length = linkLength(text, begin);
            place = std::max(place, begin + length);
            link = parsed(text.sliced(begin, length).toString());
        } else if (word.contains(u'.') && word.size() <= maxLength
            && (start == 0 || !QStringView(u"@/").contains(text[start - 1]))
            && (place == text.size() || text[place] != u'@')) {
            const auto host = word.toString().toLower();
            if (isKnownHost(host.endsWith(u'.') ? host.chopped(1) : host)) {
                const auto length = linkLength(text, start);
                place = std::max(place, start + length);
                link = parsed("https://"_L1 + text.sliced(start, length).toString());
            }
        }
        if (!link.isEmpty() && found(unwrapped(link)))
            return;
    }
}

QUrl unwrapped(const QUrl& link)
{
    auto target = link;
    for (auto redirects = 0; redirects < maxRedirects; ++redirects) {
        if (!target.host().endsWith("safelinks.protection.outlook.com"_L1, Qt::CaseInsensitive))
            break;
        const auto wrapped
            = QUrl(QUrlQuery(target).queryItemValue(u"url"_s, QUrl::FullyDecoded), QUrl::TolerantMode);
        // A stranger's redirect must not lead to a script, a share or another program.
        const auto isWeb = wrapped.scheme() == "https"_L1 || wrapped.scheme() == "http"_L1;
        if (!wrapped.isValid() || !isWeb || wrapped.host().isEmpty())
            break;
        target = wrapped;
    }
    return target;
}

} // namespace nimbarrow::linkdetector
