#include "clipboard/ClipboardListModel.h"

#include "clipboard/SeenRows.h"
#include "preferences/L10n.h"
#include "support/Test.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>

namespace {

ClipboardItem numbered(int number)
{
    ClipboardItem item;
    item.id = QUuid(static_cast<uint>(number), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    item.text = QString::number(number);
    return item;
}

QList<ClipboardItem> list(std::initializer_list<int> numbers)
{
    QList<ClipboardItem> items;
    for (const auto number : numbers)
        items << numbered(number);
    return items;
}

} // namespace

class ClipboardListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRowShowsNothingThatLies()
    {
        auto item = numbered(1);
        ClipboardListModel model;
        model.setItems({ item });
        item.text = u"\u200b\u202e"_s;
        model.setItems({ item });
        const auto row = model.index(0);
        QCOMPARE(row.data(ClipboardListModel::SummaryRole), QString());
        QCOMPARE(row.data(ClipboardListModel::KindLabelRole), L10n::text(L10n::Key::KindText));
        item.kind = ClipboardItem::Kind::Files;
        item.filePaths = QStringList { u"/a/\u202egnp.exe"_s, u"/a/b\nc"_s };
        model.setItems({ item });
        QCOMPARE(row.data(ClipboardListModel::HelpRole), L10n::files(2) + u"\ngnp.exe\nb c"_s);
    }

    void touchesNoMoreRowsThanChanged_data()
    {
        const Rows<QList<ClipboardItem>, QList<int>> row;
        row("new on top", list({ 9, 1, 2, 3, 4 }), QList { 1, 0, 0 });
        row("last to the top", list({ 4, 1, 2, 3 }), QList { 0, 1, 0 });
        row("first to the end", list({ 2, 3, 4, 1 }), QList { 0, 1, 0 });
        row("neighbours", list({ 1, 3, 2, 4 }), QList { 0, 1, 0 });
        row("two in the middle gone", list({ 1, 4 }), QList { 0, 0, 1 });
        row("new on top, last gone", list({ 9, 1, 2, 3 }), QList { 1, 0, 1 });
        row("the same", list({ 1, 2, 3, 4 }), QList { 0, 0, 0 });
        row("all gone", list({}), QList { 0, 0, 1 });
    }
    void touchesNoMoreRowsThanChanged()
    {
        const auto [after, insertsMovesRemoves] = Rows<QList<ClipboardItem>, QList<int>>::current();
        ClipboardListModel model;
        model.setItems(list({ 1, 2, 3, 4 }));
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QSignalSpy inserts(&model, &ClipboardListModel::rowsInserted);
        const QSignalSpy moves(&model, &ClipboardListModel::rowsMoved);
        const QSignalSpy removes(&model, &ClipboardListModel::rowsRemoved);
        const QSignalSpy counts(&model, &ClipboardListModel::countChanged);
        model.setItems(after);
        QCOMPARE(model.items(), after);
        QCOMPARE(QList({ int(inserts.size()), int(moves.size()), int(removes.size()) }), insertsMovesRemoves);
        QCOMPARE(counts.size(), after.size() == 4 ? 0 : 1);
    }

    void followsAnyChange()
    {
        auto random = QRandomGenerator(20260301);
        ClipboardListModel model;
        const SeenRows seen(model);

        QList<ClipboardItem> items;
        for (auto round = 0; round < 1000; ++round) {
            for (auto change = random.bounded(1, 4); change > 0; --change) {
                const auto size = int(items.size());
                const auto place = random.bounded(size + 1);
                if (place == size || size < 5)
                    items.insert(place, numbered(random.bounded(40)));
                else if (random.bounded(3) == 0)
                    items.removeAt(place);
                else if (random.bounded(2) == 0)
                    items.move(place, random.bounded(size));
                else
                    items[place].text = QString::number(round);
            }
            model.setItems(items);
            QCOMPARE(model.items(), items);
            QVERIFY(seen.areCurrent());
        }
    }
};

QTEST_GUILESS_MAIN(ClipboardListModelTest)
#include "ClipboardListModelTest.moc"
