#include "linux/display/SvgPathBounds.h"

#include <QTest>

#include <memory>

using namespace nimbarrow;

class SvgPathBoundsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void boxIsTheDrawnExtent_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QRectF>("box");

        QTest::newRow("lines") << QByteArray("M 10,20 L30 20 30-5Z") << QRectF(10, -5, 20, 25);
        QTest::newRow("relative lines") << QByteArray("m10 20 20 0v-25h-5z") << QRectF(10, -5, 20, 25);
        QTest::newRow("relative after close") << QByteArray("M10 10h5v5z l-4 -2") << QRectF(6, 8, 9, 7);
        QTest::newRow("numbers without separators")
            << QByteArray("M.5.5L1.5-.5 1e1 2E-1") << QRectF(.5, -.5, 9.5, 1);
        // The control points reach 40, the curve only 30.
        QTest::newRow("cubic") << QByteArray("M0 0C0 40 20 40 20 0") << QRectF(0, 0, 20, 30);
        QTest::newRow("smooth cubic")
            << QByteArray("M0 0C0 40 20 40 20 0S40-40 40 0") << QRectF(0, -30, 40, 60);
        QTest::newRow("quadratic") << QByteArray("M0 0Q10 20 20 0") << QRectF(0, 0, 20, 10);
        QTest::newRow("smooth quadratic") << QByteArray("m0 0q10 20 20 0t20 0") << QRectF(0, -10, 40, 20);
        QTest::newRow("smooth after a line is straight")
            << QByteArray("M0 0L5 5T20 0") << QRectF(0, 0, 20, 5);
        QTest::newRow("half circle down") << QByteArray("M0 0A10 10 0 0 0 20 0") << QRectF(0, 0, 20, 10);
        QTest::newRow("half circle up") << QByteArray("M0 0a10 10 0 0 1 20 0") << QRectF(0, -10, 20, 10);
        QTest::newRow("flags in one word") << QByteArray("M0 0a10 10 0 0120 0") << QRectF(0, -10, 20, 10);
        QTest::newRow("large arc") << QByteArray("M0 0A10 10 0 1 1 10 10") << QRectF(0, -10, 20, 20);
        QTest::newRow("small arc") << QByteArray("M0 0A10 10 0 0 1 10 10") << QRectF(0, 0, 10, 10);
        QTest::newRow("arc too small for its ends")
            << QByteArray("M0 0A1 1 0 0 0 20 0") << QRectF(0, 0, 20, 10);
        QTest::newRow("tilted ellipse") << QByteArray("M0 0A5 10 90 0 0 20 0") << QRectF(0, 0, 20, 5);
        QTest::newRow("a phone's notch")
            << QByteArray("M 355,0  H 725 C 580,0 615,82 540,82  C 465,82 500,0 355,0  Z")
            << QRectF(355, 0, 370, 82);
    }

    void boxIsTheDrawnExtent()
    {
        QFETCH(const QByteArray, path);
        QFETCH(const QRectF, box);
        const auto bounds = svgPathBounds(path);
        QVERIFY(bounds);
        constexpr auto tolerance = 1e-6;
        QVERIFY2(qAbs(bounds->left() - box.left()) < tolerance && qAbs(bounds->top() - box.top()) < tolerance
                && qAbs(bounds->right() - box.right()) < tolerance
                && qAbs(bounds->bottom() - box.bottom()) < tolerance,
            std::unique_ptr<char[]>(QTest::toString(*bounds)).get());
    }

    void badTextHasNoBox_data()
    {
        QTest::addColumn<QByteArray>("path");

        for (const auto* path :
            { "", "   ", "M", "M 1", "M 1 1", "L 1 1", "10 10", "Z", "M0 0L", "M0 0L1", "M0 0L1 x",
                "M0 0 L1 1 5", "M0 0X1 1", "M0 0C1 1 2 2", "M0 0A1 1 0 2 0 5 5", "M0 0Z5 5", "M0 0L1e 1",
                "M0 0L- 1", "M0 0L1e300 5", "M0 0L99999999999 5", "M0 0L\xff\xfe", "M0 0l900000 0l900000 0" })
            QTest::newRow(path) << QByteArray(path);
        QTest::newRow("zero bytes") << QByteArray(1000, '\0');
        QTest::newRow("endless digits") << "M0 0L" + QByteArray(200'000, '9');
        QTest::newRow("endless segments") << QByteArray("M0 0") + QByteArray("L1 1").repeated(60'000) + "x";
        QTest::newRow("out of the path") << QByteArray("M0 0H5V5Z\"/><path id=\"path");
        QTest::newRow("endless exponent") << "M0 0L1e" + QByteArray(200'000, '9');
    }

    void badTextHasNoBox()
    {
        QFETCH(const QByteArray, path);
        QVERIFY(!svgPathBounds(path));
    }
};

QTEST_MAIN(SvgPathBoundsTest)
#include "SvgPathBoundsTest.moc"
