#include "macos/display/ScreenFacts.h"

#include "notch/NotchGeometry.h"
#include "support/Test.h"

class ScreenFactsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theHousingIsWhereTheAreasEnd()
    {
        // A second screen lies to the left and has no housing.
        const ScreenFacts plain { u"Plain"_s, { -1920, 0, 1920, 1080 }, 0, {}, {} };
        const ScreenFacts built { u"Built-in"_s, { 0, 0, 1512, 982 }, 32, { 0, 950, 663.3, 32 },
            { 848.7, 950, 663.3, 32 } };
        const auto geometry = NotchGeometry::find({ plain.screen(), built.screen() });
        QVERIFY(geometry);
        QCOMPARE(geometry->screenFrame, built.frame);
        QCOMPARE(geometry->notchRect, (ScreenRect { 663, 950, 186, 32 }));
    }

    void noHousing_data()
    {
        QTest::addColumn<double>("inset");
        QTest::addColumn<double>("leftWidth");
        QTest::addColumn<double>("rightWidth");
        QTest::newRow("nothing") << 0.0 << 0.0 << 0.0;
        QTest::newRow("an inset alone") << 32.0 << 0.0 << 0.0;
        QTest::newRow("one area") << 32.0 << 600.0 << 0.0;
        QTest::newRow("areas without an inset") << 0.0 << 600.0 << 600.0;
        QTest::newRow("a negative inset") << -1.0 << 600.0 << 600.0;
        QTest::newRow("areas that meet") << 32.0 << 756.0 << 756.0;
    }
    void noHousing()
    {
        QFETCH(double, inset);
        QFETCH(double, leftWidth);
        QFETCH(double, rightWidth);
        const ScreenFacts facts { u"Screen"_s, { 0, 0, 1512, 982 }, inset, { 0, 950, leftWidth, 32 },
            { 1512 - rightWidth, 950, rightWidth, 32 } };
        QVERIFY(!NotchGeometry::find({ facts.screen() }));
        QVERIFY(facts.screen().topInset >= 0);
    }
};

QTEST_GUILESS_MAIN(ScreenFactsTest)
#include "ScreenFactsTest.moc"
