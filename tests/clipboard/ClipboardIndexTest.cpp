#include "clipboard/ClipboardIndex.h"

#include "support/Test.h"

using Kind = ClipboardItem::Kind;

namespace {

ClipboardItem hello()
{
    ClipboardItem item;
    item.id = QUuid(u"6D1F0C9E-2B7A-4C55-9E0B-6A3C2F1D8E47"_s);
    item.kind = Kind::Text;
    item.createdAt = QDateTime::fromString(u"2026-03-01T09:41:07Z"_s, Qt::ISODate);
    item.text = u"hello"_s;
    return item;
}

// One good element, in which a test replaces one line.
const QByteArray good = R"([{"id":"6D1F0C9E-2B7A-4C55-9E0B-6A3C2F1D8E47",
"kind":"text",
"createdAt":"2026-03-01T09:41:07Z",
"text":"hello",
"isScreenshot":false,
"pinned":false}])";

} // namespace

class ClipboardIndexTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesSortedKeysAndLeavesOutWhatIsAbsent()
    {
        auto item = hello();
        item.createdAt = item.createdAt.addMSecs(999).toOffsetFromUtc(7200);
        item.text = u"a/b\\/c"_s;
        QCOMPARE(clipboardindex::encode({ item }).simplified(),
            R"([ { "createdAt": "2026-03-01T09:41:07Z", "id": "6D1F0C9E-2B7A-4C55-9E0B-6A3C2F1D8E47", )"
            R"("isScreenshot": false, "kind": "text", "pinned": false, "text": "a\/b\\\/c" } ])");
        QVERIFY(clipboardindex::encode({ item }).count('\n') > 6);
    }

    void readsBackWhatItWrote()
    {
        auto everything = hello();
        everything.kind = Kind::Files;
        everything.text
            = u"/\\\"\u2028 e\u0301 \U0001f468\u200d\U0001f469"_s + QChar(0) + QChar(0xd800) + u'x';
        everything.imagePath = u"/a b/\\/c.png"_s;
        everything.filePaths = QStringList { u"/x"_s, u""_s };
        everything.isScreenshot = everything.pinned = true;
        everything.sourceApp = u"Нотатки"_s;
        everything.contentHash = u"2cf2"_s;
        const QList items { everything, hello() };
        QCOMPARE(clipboardindex::decode(clipboardindex::encode(items)), items);
        for (const auto* const letters : { u"x", u"/\"\\", u"\x1\n\t\x1f", u"ї", u"字", u"\U0001f468" }) {
            everything.text = QString::fromUtf16(letters).repeated(1000) + QChar(0xdc00);
            everything.filePaths = QStringList { *everything.text, *everything.text };
            const auto size = clipboardindex::encode({ everything }).size();
            QVERIFY(clipboardindex::encodedSize(everything) >= size);
            QVERIFY(clipboardindex::encodedSize(everything) < size + 500);
        }
        QCOMPARE(clipboardindex::decode("[]"), QList<ClipboardItem>());
    }

    void readsTheFile_data()
    {
        const Rows<QByteArray, QByteArray, bool> row;
        row("as it is", "", "", true);
        row("unknown key", R"("text":"hello")", R"("text":"hello","new":[1])", true);
        row("null text", R"("hello")", "null", true);
        row("lower-case identifier", "6D1F0C9E", "6d1f0c9e", true);
        row("numeric offset", "07Z", "07+02:00", true);
        row("no pin", R"(,
"pinned":false)",
            "", false);
        row("no date", R"("createdAt":"2026-03-01T09:41:07Z",)", "", false);
        row("another kind", R"("kind":"text")", R"("kind":"video")", false);
        row("fractions", "07Z", "07.250Z", false);
        row("no zone", "07Z", "07", false);
        row("thirty-first of February", "03-01", "02-31", false);
        row("midnight at the end", "09:41:07", "24:00:00", false);
        row("last year", "2026-03-01T09:41:07Z", "9999-12-31T23:59:59Z", true);
        row("too late a year in UTC", "2026-03-01T09:41:07Z", "9999-12-31T23:59:59-00:01", false);
        row("too early a year in UTC", "2026-03-01T09:41:07Z", "0001-01-01T00:00:00+00:01", false);
        row("line break behind the date", "07Z", "07Z\\n", false);
        row("braces", "6D1F0C9E-2B7A-4C55-9E0B-6A3C2F1D8E47", "{6D1F0C9E-2B7A-4C55-9E0B-6A3C2F1D8E47}",
            false);
        row("number for text", R"("hello")", "7", false);
        row("number for truth", R"("pinned":false)", R"("pinned":1)", false);
        row("string for paths", R"("text":"hello")", R"("filePaths":"x")", false);
        row("number among paths", R"("text":"hello")", R"("filePaths":["x",1])", false);
        row("bad second element", "}]", "},{}]", false);
        row("truncated", "}]", "}", false);
        row("something behind", "}]", "}]]", false);
        row("no array", "[{", "{", false);
        row("not UTF-8", "hello", "\xff\xfe", false);
    }
    void readsTheFile()
    {
        const auto [line, instead, readable] = Rows<QByteArray, QByteArray, bool>::current();
        auto json = good;
        QVERIFY(json.contains(line));
        if (!line.isEmpty())
            json.replace(line, instead);
        const auto items = clipboardindex::decode(json);
        QCOMPARE(items.has_value(), readable);
        if (items)
            QCOMPARE(clipboardindex::decode(clipboardindex::encode(*items)), items);
    }

    void survivesWhatIsNoIndexAtAll()
    {
        QCOMPARE(clipboardindex::decode({}), std::nullopt);
        QCOMPARE(clipboardindex::decode(QByteArray(1000, '\0')), std::nullopt);
        QCOMPARE(clipboardindex::decode(QByteArray(5'000'000, '[')), std::nullopt);
        QCOMPARE(clipboardindex::decode(QByteArray("[{\"a\":").repeated(500'000)), std::nullopt);
        QCOMPARE(clipboardindex::decode(QByteArray(clipboardindex::maxSize + 1, ' ')), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(ClipboardIndexTest)
#include "ClipboardIndexTest.moc"
