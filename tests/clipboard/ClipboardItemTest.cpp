#include "clipboard/ClipboardItem.h"

#include "clipboard/EntryHandoff.h"
#include "preferences/L10n.h"
#include "support/Test.h"

#include <QMimeData>

using Kind = ClipboardItem::Kind;
using Shared = QList<ShareItem>;

namespace {

ClipboardItem textItem(const QString& text)
{
    ClipboardItem item;
    item.text = text;
    return item;
}

/// What another program gets that it is dragged to: links, then the text.
QStringList carried(const ClipboardItem& item)
{
    const auto content = EntryHandoff::dragContent(item);
    QStringList carried;
    for (const auto& url : content->urls())
        carried << QString::fromLatin1(url.toEncoded());
    if (content->hasFormat(u"text/plain"_s))
        carried << content->text();
    return carried;
}

} // namespace

class ClipboardItemTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { L10n::setCurrent(L10n::English); }

    void summaryOfATextIsItsFirstLine()
    {
        const QList<std::pair<QString, QString>> rows {
            { u"\n\n  first line  \nsecond"_s, u"first line"_s },
            { u"\v\f\r\n\u0085\u2028\u2029a\u2028b"_s, u"a"_s },
            { u"  \t\nsecond"_s, u""_s },
            { u"\u00a0\t\u3000a b\u2003"_s, u"a b"_s },
            // Other invisible characters stay.
            { u"\u200ba\x1c"_s, u"\u200ba\x1c"_s },
            { u"\n\r\n"_s, u""_s },
        };
        for (const auto& [text, summary] : rows)
            QCOMPARE(textItem(text).summary(), summary);
    }

    void linkIsSummedUpByItsHost()
    {
        auto link = textItem(u"https://example.org/a?b%20"_s);
        link.kind = Kind::Link;
        QCOMPARE(carried(link), QStringList({ *link.text, *link.text }));
        QCOMPARE(link.summary(), u"example.org"_s);
        QCOMPARE(link.dragUrl(), QUrl(*link.text));
        QCOMPARE(link.shareItems(), Shared { QUrl(*link.text) });
        link.text = u"https://[broken"_s;
        QCOMPARE(link.summary(), link.text);
        QCOMPARE(link.dragUrl(), std::nullopt);
        QCOMPARE(link.shareItems(), Shared { u"https://[broken"_s });
        link.text.reset();
        QCOMPARE(link.shareItems(), Shared());
        QCOMPARE(link.summary(), std::nullopt);
    }

    void filesAreNamedOrCounted()
    {
        ClipboardItem item;
        item.kind = Kind::Files;
        item.filePaths = QStringList { u"/a/one.txt"_s };
        QCOMPARE(item.symbol(), u"doc"_s);
        QCOMPARE(item.kindLabel(), u"File"_s);
        QCOMPARE(item.summary(), u"one.txt"_s);
        item.filePaths = QStringList { u"/a/one.txt"_s, u"/a/b#c"_s };
        QCOMPARE(item.symbol(), u"doc.on.doc"_s);
        QCOMPARE(item.kindLabel(), u"Files"_s);
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(item.summary(), u"2 файли"_s);
        QCOMPARE(item.fileUrls().last().toLocalFile(), u"/a/b#c"_s);
        QCOMPARE(carried(item), QStringList({ u"file:///a/one.txt"_s, u"file:///a/b%23c"_s }));
        QCOMPARE(item.shareItems(),
            (Shared { QUrl::fromLocalFile(u"/a/one.txt"_s), QUrl::fromLocalFile(u"/a/b#c"_s) }));
    }

    void aFileKeepsTheBytesOfItsName()
    {
        ClipboardItem item;
        item.kind = Kind::Files;
        for (const auto& name : { "/a b/%D0%9F", "/caf%E9%20%231.txt" }) {
            const auto url = QUrl::fromEncoded("file://"_ba + name);
            item.filePaths = QStringList { storedFile(url) };
            QCOMPARE(item.fileUrls().first().toEncoded(), url.toEncoded());
        }
        QCOMPARE(storedFile(QUrl(u"file:///a%20b/"_s)), u"/a b"_s);
    }

    void textsAndImagesAreShared()
    {
        // A text is one, also when it looks like a link.
        const auto text = textItem(u" https://example.org\n"_s);
        QCOMPARE(text.shareItems(), Shared { *text.text });
        QCOMPARE(carried(text), QStringList { *text.text });
        ClipboardItem image;
        QVERIFY(!EntryHandoff::dragContent(image));
        image.kind = Kind::Image;
        QCOMPARE(image.shareItems(), Shared());
        image.imagePath = u"/a/100%.png"_s;
        QCOMPARE(image.shareItems(), Shared { QUrl::fromLocalFile(u"/a/100%.png"_s) });
        QCOMPARE(carried(image), QStringList { u"file:///a/100%25.png"_s });
    }
};

QTEST_GUILESS_MAIN(ClipboardItemTest)
#include "ClipboardItemTest.moc"
