#include "macos/media/RecentlyUsed.h"

#include <QTest>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

class RecentlyUsedTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void letsGoOfWhatWasNotUsedForLongest()
    {
        RecentlyUsed<int> kept(2);
        QVERIFY(!kept.find(u"one"_s));
        kept.keep(u"one"_s, 1);
        kept.keep(u"two"_s, 2);
        // Using it counts as much as keeping it.
        QCOMPARE(*kept.find(u"one"_s), 1);
        QCOMPARE(kept.keep(u"three"_s, 3), 3);
        QVERIFY(!kept.find(u"two"_s));
        QCOMPARE(*kept.find(u"one"_s), 1);
        QCOMPARE(*kept.find(u"three"_s), 3);
    }
};

QTEST_GUILESS_MAIN(RecentlyUsedTest)
#include "RecentlyUsedTest.moc"
