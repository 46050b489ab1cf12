#include "clipboard/EntryHandoff.h"

#include "clipboard/ClipboardItem.h"

#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using Kind = ClipboardItem::Kind;

class EntryHandoffTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void dragsWhatAnotherProgramCanTake_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QStringList>("holds");
        QTest::addColumn<QStringList>("urls");
        QTest::addColumn<QString>("text");

        QTest::newRow("a text as it is")
            << Kind::Text << QStringList { u" two\nlines "_s } << QStringList() << u" two\nlines "_s;
        QTest::newRow("a link, also as text")
            << Kind::Link << QStringList { u"https://example.org/%20"_s }
            << QStringList { u"https://example.org/%20"_s } << u"https://example.org/%20"_s;
        QTest::newRow("an image as its file")
            << Kind::Image << QStringList { u"/images/a b#.png"_s }
            << QStringList { u"file:///images/a%20b%23.png"_s } << QString();
        QTest::newRow("every file") << Kind::Files << QStringList { u"/one"_s, u"/two"_s }
                                    << QStringList { u"file:///one"_s, u"file:///two"_s } << QString();
    }

    void dragsWhatAnotherProgramCanTake()
    {
        QFETCH(Kind, kind);
        QFETCH(QStringList, holds);
        QFETCH(QStringList, urls);
        QFETCH(QString, text);
        ClipboardItem item;
        item.kind = kind;
        switch (kind) {
        case Kind::Text:
        case Kind::Link: item.text = holds.constFirst(); break;
        case Kind::Image: item.imagePath = holds.constFirst(); break;
        case Kind::Files: item.filePaths = holds; break;
        }
        const auto content = EntryHandoff::dragContent(item);
        QVERIFY(content);
        QStringList carried;
        for (const auto& url : content->urls())
            carried << QString::fromLatin1(url.toEncoded());
        QCOMPARE(carried, urls);
        QCOMPARE(content->hasFormat(u"text/plain"_s), !text.isEmpty());
        if (!text.isEmpty())
            QCOMPARE(content->text(), text);
    }

    void dragsNothingOfAnEmptyEntry() { QVERIFY(!EntryHandoff::dragContent({})); }
};

QTEST_GUILESS_MAIN(EntryHandoffTest)
#include "EntryHandoffTest.moc"
