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
    void dragsWhatAnotherProgramCanTake()
    {
        const auto carried = [](const ClipboardItem& item) {
            const auto content = EntryHandoff::dragContent(item);
            QStringList carried;
            for (const auto& url : content->urls())
                carried << QString::fromLatin1(url.toEncoded());
            if (content->hasFormat(u"text/plain"_s))
                carried << content->text();
            return carried;
        };
        ClipboardItem item;
        item.text = u" two\nlines "_s;
        QCOMPARE(carried(item), QStringList { *item.text });
        item.kind = Kind::Link;
        item.text = u"https://example.org/%20"_s;
        QCOMPARE(carried(item), QStringList({ *item.text, *item.text }));
        item.kind = Kind::Image;
        item.imagePath = u"/images/a b#.png"_s;
        QCOMPARE(carried(item), QStringList { u"file:///images/a%20b%23.png"_s });
        item.kind = Kind::Files;
        item.filePaths = QStringList { u"/one"_s, u"/two"_s };
        QCOMPARE(carried(item), QStringList({ u"file:///one"_s, u"file:///two"_s }));
    }

    void dragsNothingOfAnEmptyEntry() { QVERIFY(!EntryHandoff::dragContent({})); }
};

QTEST_GUILESS_MAIN(EntryHandoffTest)
#include "EntryHandoffTest.moc"
