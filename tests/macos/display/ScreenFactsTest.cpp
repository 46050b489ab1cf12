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

    void noHousing()
    {
        const ScreenFacts facts { u"Screen"_s, { 0, 0, 1512, 982 }, -1, { 0, 950, 600, 32 }, {} };
        QVERIFY(facts.screen().topLeftArea);
        QVERIFY(!facts.screen().topRightArea);
        QCOMPARE(facts.screen().topInset, 0.0);
    }
};

QTEST_GUILESS_MAIN(ScreenFactsTest)
#include "ScreenFactsTest.moc"
