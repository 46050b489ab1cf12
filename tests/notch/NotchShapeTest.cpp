#include "notch/NotchShape.h"

#include "style/Springs.h"
#include "support/Test.h"

class NotchShapeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void limitsItsRadiiToItsSize()
    {
        const struct {
            QSizeF size;
            qreal top;
            qreal bottom;
            qreal drawnTop;
            qreal drawnBottom;
        } rows[] = {
            { { 30, 258 }, 10, 0, 7.5, 0 },
            { { 460, 12 }, 10, 0, 6, 0 },
            { { 60, 258 }, 10, 22, 10, 20 },
            { { 460, 30 }, 10, 22, 10, 20 },
            { { 460, 258 }, -3, -5, 0, 0 },
            { { 0, 0 }, 10, 22, 0, 0 },
        };
        for (const auto& row : rows) {
            const QRectF rect(QPointF(5, 3), row.size);
            QCOMPARE(NotchShape::path(rect, row.top, row.bottom),
                NotchShape::path(rect, row.drawnTop, row.drawnBottom));
        }
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
