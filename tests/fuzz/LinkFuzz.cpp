#include "Fuzz.h"
#include "calendar/DayEvent.h"
#include "calendar/LinkDetector.h"
#include "clipboard/ClipboardStore.h"

#include <numeric>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

namespace {

bool isWebLink(const QUrl& url)
{
    return url.isValid() && !url.host().isEmpty()
        && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1);
}

QList<QUrl> linksIn(const QString& text)
{
    QList<QUrl> links;
    linkdetector::visit(
        text,
        [](const QString& host) {
            fuzz::require(host == host.toLower(), "a host is asked for in lower case");
            return host.endsWith("zoom.us"_L1);
        },
        [&links](const QUrl& link) {
            links << link;
            return false;
        });
    return links;
}

void checkDetector(const QString& text)
{
    const auto links = linksIn(text);
    for (const auto& link : links)
        fuzz::require(isWebLink(link), "what is found is a web link");
    fuzz::require(linksIn(u'\n' + text + u'\n') == links, "lines around it change nothing");
    fuzz::require(linksIn(text + u'\n' + text) == links + links, "two lines have twice the links");

    qsizetype visited = 0;
    linkdetector::visit(
        text, [](const QString&) { return false; }, [&visited](const QUrl&) { return ++visited == 1; });
    fuzz::require(visited <= 1, "the search ends when it may");

    const auto meeting = DayEvent::meetingUrlIn({ QUrl(text.left(200)) }, { text });
    fuzz::require(!meeting || (meeting->isValid() && DayEvent::isMeeting(*meeting)), "a meeting is one");
}

void checkCopiedLink(const QString& text)
{
    if (!ClipboardStore::isLink(text))
        return;
    ClipboardItem item;
    item.kind = ClipboardItem::Kind::Link;
    item.text = text;
    fuzz::require(item.linkUrl() && isWebLink(*item.linkUrl()), "a copied link can be opened");
    fuzz::require(item.summary() && !item.summary()->isEmpty(), "a copied link has a name");
    fuzz::require(item.shareItems() == QList<ShareItem> { *item.linkUrl() }, "a link is shared as one");
}

} // namespace

/// Text that strangers write into invitations, and text that somebody copies.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = QString::fromUtf8(QByteArrayView(data, static_cast<qsizetype>(size)));
    checkDetector(text);
    checkCopiedLink(text);
    // Now and then so much of it that more than time in proportion would be noticed.
    if (size >= 16 && std::accumulate(data, data + size, 0U) % 256 == 0)
        linksIn(text.repeated(1 + 400'000 / text.size()));
    return 0;
}
