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
    return c.isSpace() || c.category() == QChar::Other_Control
        || QStringView(u"<>\"`{}|\\^«»“”„‘’‹›").contains(c);
}

/// The length of the link that the text begins with, without what only follows it.
qsizetype linkLength(QStringView text)
{
    static constexpr QStringView entities[] { u"&quot;", u"&lt;", u"&gt;", u"&#34;", u"&#39;", u"&apos;",
        u"&nbsp;" };
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
    while (length > 0 && QStringView(u".,;:!?'*_~").contains(text[length - 1]))
        --length;
    return length;
}

QUrl parsed(QString link)
{
    if (link.size() > maxLength)
        return {};
    link.replace("&amp;"_L1, "&"_L1, Qt::CaseInsensitive);
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
            const auto length = linkLength(text.sliced(begin));
            place = std::max(place, begin + length);
            link = parsed(text.sliced(begin, length).toString());
        } else if (word.contains(u'.') && word.size() <= maxLength
            && (start == 0 || !QStringView(u"@/").contains(text[start - 1]))
            && (place == text.size() || text[place] != u'@')) {
            const auto host = word.toString().toLower();
            if (isKnownHost(host.endsWith(u'.') ? host.chopped(1) : host)) {
                const auto length = linkLength(text.sliced(start));
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
        if (!wrapped.isValid() || wrapped.host().isEmpty())
            break;
        target = wrapped;
    }
    return target;
}

} // namespace nimbarrow::linkdetector
