#include "keepawake/OwlFixture.h"
#include "preferences/L10n.h"
#include "style/Motion.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace nimbarrow;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class KeepAwakeButtonTest : public QObject {
    Q_OBJECT

    std::unique_ptr<OwlFixture> m;

    [[nodiscard]] QStringList labels() const
    {
        QStringList labels;
        for (const auto* const row : m->find("Choice"))
            labels << row->property("label").toString();
        return labels;
    }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        L10n::setCurrent(L10n::English);
        Motion::instance().setReduced(false);
        m = std::make_unique<OwlFixture>();
    }
    void cleanup() { m.reset(); }

    void offersTheDurationsInTheLanguageOfTheInterface()
    {
        m->clickOwl();
        QTRY_COMPARE(labels(), (QStringList { u"1 h"_s, u"2 h"_s, u"3 h"_s, u"∞"_s }));
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(labels(), (QStringList { u"1 год"_s, u"2 год"_s, u"3 год"_s, u"∞"_s }));

        // Inside the surface, below the owl.
        const auto surface = QRectF(0, 0, 460, 240);
        for (const auto* const row : m->find("Choice"))
            QVERIFY(surface.contains(row->mapRectToScene(row->boundingRect())));
        m->clickOwl();
        QTRY_COMPARE(labels(), QStringList());
    }

    void aChoiceClosesThePickerAndWakesTheOwl()
    {
        m->clickOwl();
        QTRY_COMPARE(labels().size(), 4);
        m->click(m->find("Choice").value(1));
        QTRY_COMPARE(labels(), QStringList());
        QCOMPARE(m->keepAwake.until(), m->time.wallTime().addSecs(7200));
        QCOMPARE(m->root->property("clicksBelow").toInt(), 0);
        m->time.advance(1s);
        QCOMPARE(m->motion.pose().wake, 1.0);

        m->clickOwl();
        QVERIFY(!m->keepAwake.isActive());
        QVERIFY(labels().isEmpty());
    }

    void aClickElsewhereOnlyClosesThePicker()
    {
        m->clickOwl();
        QTRY_COMPARE(labels().size(), 4);
        QTest::mouseClick(&m->window, Qt::LeftButton, {}, { 60, 120 });
        QTRY_VERIFY(labels().isEmpty());
        QCOMPARE(m->root->property("clicksBelow").toInt(), 0);
        QTest::mouseClick(&m->window, Qt::LeftButton, {}, { 60, 120 });
        QCOMPARE(m->root->property("clicksBelow").toInt(), 1);
        QVERIFY(!m->keepAwake.isActive());
    }

    void theOwlStaysWhereItIsWhenTheTimeAppears()
    {
        auto* const owl = m->find("OwlButton").value(0);
        const auto place = owl->mapToScene({ 0, 0 });
        m->keepAwake.choose(3);
        QTest::qWait(20);
        QCOMPARE(owl->mapToScene({ 0, 0 }), place);
        QCOMPARE(owl->property("help"), u"Allow sleep"_s);
    }

    void nothingTicksWhileTheSurfaceIsClosed()
    {
        m->clickOwl();
        QTRY_COMPARE(labels().size(), 4);
        m->root->setProperty("active", false);
        QTRY_VERIFY(labels().isEmpty());
        QCOMPARE(m->time.pending(), 0);
        QSignalSpy frames(&m->window, &QQuickWindow::afterRendering);
        m->time.advance(10s);
        QTest::qWait(100);
        QCOMPARE(frames.count(), 0);

        // What ended meanwhile is seen when it opens.
        m->keepAwake.choose(1);
        m->time.setWallTime(m->time.wallTime().addSecs(4000));
        m->root->setProperty("active", true);
        QVERIFY(!m->keepAwake.isActive());
        QVERIFY(m->time.pending() > 0);
        m->root.reset();
        QCOMPARE(m->time.pending(), 0);
    }

    void keepsStillWithLessMotion()
    {
        Motion::instance().setReduced(true);
        QCOMPARE(m->time.pending(), 0);
        m->clickOwl();
        // At once, without a fade.
        QCOMPARE(labels().size(), 4);
        m->click(m->find("Choice").value(3));
        QCOMPARE(labels().size(), 0);
        QVERIFY(m->motion.pose() == OwlPose { .wake = 1 });
        QCOMPARE(m->time.pending(), 0);
    }
};

QTEST_MAIN(KeepAwakeButtonTest)
#include "KeepAwakeButtonTest.moc"
