#include "preferences/L10n.h"
#include "qml/SurfaceFixture.h"
#include "style/Motion.h"
#include "support/Test.h"

#include <QRegularExpression>

class KeepAwakeButtonTest : public QObject {
    Q_OBJECT

    std::unique_ptr<SurfaceFixture> m;

    [[nodiscard]] QStringList labels() const
    {
        QStringList labels;
        for (const auto* const row : m->findAll("Choice"))
            labels << row->property("label").toString();
        return labels;
    }

    void clickOwl() { m->click(m->find("OwlButton")); }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        L10n::setCurrent(L10n::English);
        Motion::instance().setReduced(true);
        m = std::make_unique<SurfaceFixture>();
        // The day has timers of its own.
        m->history.settings.setShowCalendar(false);
        m->addText(u"below"_s);
        m->history.time.advance(1s);
        m->history.queues.runAll();
        m->show(NotchState::Expanded);
        Motion::instance().setReduced(false);
    }
    void cleanup() { m.reset(); }

    void offersTheDurationsInTheLanguageOfTheInterface()
    {
        clickOwl();
        QTRY_COMPARE(labels(), (QStringList { u"1 h"_s, u"2 h"_s, u"3 h"_s, u"∞"_s }));
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(labels(), (QStringList { u"1 год"_s, u"2 год"_s, u"3 год"_s, u"∞"_s }));

        // Inside the surface, below the owl.
        const auto surface = QRectF(0, 0, 460, 258);
        for (const auto* const row : m->findAll("Choice"))
            QVERIFY(surface.contains(row->mapRectToScene(row->boundingRect())));
        clickOwl();
        QTRY_COMPARE(labels(), QStringList());
    }

    void aChoiceClosesThePickerAndWakesTheOwl()
    {
        clickOwl();
        QTRY_COMPARE(labels().size(), 4);
        m->click(m->find("Choice", 1));
        QTRY_COMPARE(labels(), QStringList());
        QCOMPARE(m->keepAwake.until(), m->history.time.wallTime().addSecs(7200));
        QVERIFY(m->pasteboard.written.isEmpty());
        m->history.time.advance(1s);
        QCOMPARE(m->owl.pose().wake, 1.0);

        clickOwl();
        QVERIFY(!m->keepAwake.isActive());
        QVERIFY(labels().isEmpty());
    }

    void aClickElsewhereOnlyClosesThePicker()
    {
        const auto place = m->middle(m->find("ClipboardRow"));
        clickOwl();
        QTRY_COMPARE(labels().size(), 4);
        m->click(place);
        QTRY_VERIFY(labels().isEmpty());
        QVERIFY(m->pasteboard.written.isEmpty());
        m->click(place);
        QVERIFY(!m->pasteboard.written.isEmpty());
        QVERIFY(!m->keepAwake.isActive());
    }

    void theOwlStaysWhereItIsWhenTheTimeAppears()
    {
        auto* const owl = m->find("OwlButton");
        const auto place = owl->mapToScene({ 0, 0 });
        m->keepAwake.choose(3);
        QTest::qWait(20);
        QTRY_COMPARE(owl->mapToScene({ 0, 0 }), place);
        QCOMPARE(owl->property("help"), u"Allow sleep"_s);
    }

    void nothingTicksWhileTheSurfaceIsClosed()
    {
        clickOwl();
        QTRY_COMPARE(labels().size(), 4);
        // However soon it opens again.
        m->state.setMode(NotchState::Collapsed);
        m->state.setMode(NotchState::Expanded);
        QTRY_VERIFY(labels().isEmpty());
        m->show(NotchState::Collapsed);
        QCOMPARE(m->history.time.pending(), 0);
        QSignalSpy frames(&m->view, &QQuickWindow::afterRendering);
        m->history.time.advance(10s);
        QTest::qWait(100);
        QCOMPARE(frames.count(), 0);

        // What ended meanwhile is seen when it opens.
        m->keepAwake.choose(1);
        m->history.time.setWallTime(m->history.time.wallTime().addSecs(4000));
        m->state.setMode(NotchState::Expanded);
        QVERIFY(!m->keepAwake.isActive());
        QVERIFY(m->history.time.pending() > 0);
        m->view.setSource({});
        QCOMPARE(m->history.time.pending(), 0);
    }

    void keepsStillWithLessMotion()
    {
        Motion::instance().setReduced(true);
        QCOMPARE(m->history.time.pending(), 0);
        clickOwl();
        // At once, without a fade.
        QCOMPARE(labels().size(), 4);
        m->click(m->find("Choice", 3));
        QCOMPARE(labels().size(), 0);
        QVERIFY(m->owl.pose() == OwlPose { .wake = 1 });
        QCOMPARE(m->history.time.pending(), 0);
    }
};

QTEST_MAIN(KeepAwakeButtonTest)
#include "KeepAwakeButtonTest.moc"
