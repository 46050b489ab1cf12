#include "notch/NotchShape.h"

#include "style/Springs.h"

#include <QTest>

using namespace nimbarrow;

class NotchShapeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void limitsItsRadiiToItsSize_data()
    {
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<qreal>("top");
        QTest::addColumn<qreal>("bottom");
        QTest::addColumn<qreal>("drawnTop");
        QTest::addColumn<qreal>("drawnBottom");

        QTest::newRow("as they are") << QSizeF(460, 258) << 10.0 << 22.0 << 10.0 << 22.0;
        QTest::newRow("top, narrow") << QSizeF(30, 258) << 10.0 << 0.0 << 7.5 << 0.0;
        QTest::newRow("top, flat") << QSizeF(460, 12) << 10.0 << 0.0 << 6.0 << 0.0;
        QTest::newRow("bottom, narrow") << QSizeF(60, 258) << 10.0 << 22.0 << 10.0 << 20.0;
        QTest::newRow("bottom, flat") << QSizeF(460, 30) << 10.0 << 22.0 << 10.0 << 20.0;
        QTest::newRow("below nothing") << QSizeF(460, 258) << -3.0 << -5.0 << 0.0 << 0.0;
        QTest::newRow("empty") << QSizeF(0, 0) << 10.0 << 22.0 << 0.0 << 0.0;
    }

    void limitsItsRadiiToItsSize()
    {
        QFETCH(QSizeF, size);
        QFETCH(qreal, top);
        QFETCH(qreal, bottom);
        QFETCH(qreal, drawnTop);
        QFETCH(qreal, drawnBottom);
        const QRectF rect(QPointF(5, 3), size);

        QCOMPARE(NotchShape::path(rect, top, bottom), NotchShape::path(rect, drawnTop, drawnBottom));
    }

    void flaresAtTheTopAndRoundsAtTheBottom()
    {
        const auto path = NotchShape::path({ 0, 0, 460, 258 }, 10, 22);
        QVERIFY(path.contains({ 2, 0.05 }));
        QVERIFY(!path.contains({ 2, 5 }));
        QVERIFY(path.contains({ 11, 200 }));
        QVERIFY(!path.contains({ 11, 257 }));
        QVERIFY(path.contains({ 230, 257.9 }));
        QCOMPARE(path.boundingRect(), QRectF(0, 0, 460, 258));
    }

    void springComesToRestWithOneSmallSwing()
    {
        const auto curve = Springs::surface();
        QCOMPARE(curve.valueForProgress(0), 0.0);
        QCOMPARE(curve.valueForProgress(1), 1.0);
        QVERIFY(qAbs(curve.valueForProgress(0.9999) - 1) < 1e-3);
        qreal highest = 0;
        for (auto step = 0; step <= 1000; ++step)
            highest = std::max(highest, curve.valueForProgress(step / 1000.0));
        // A spring of this damping overshoots by exp(-pi d / sqrt(1 - d^2)).
        QVERIFY2(highest > 1.004 && highest < 1.006, qPrintable(QString::number(highest)));
        QVERIFY(qAbs(curve.valueForProgress(0.15) - 0.534) < 1e-3);
    }
};

QTEST_MAIN(NotchShapeTest)
#include "NotchShapeTest.moc"
