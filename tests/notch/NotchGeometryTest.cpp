#include "notch/NotchPanel.h"
#include "support/FakeDesktop.h"
#include "support/Test.h"

namespace {

Screen screen(ScreenRect frame, double inset, std::optional<double> left, std::optional<double> right)
{
    Screen result { u"eDP-1"_s, frame, inset, std::nullopt, std::nullopt };
    const auto y = frame.maxY() - inset;
    if (left)
        result.topLeftArea = ScreenRect { frame.x, y, *left, inset };
    if (right)
        result.topRightArea = ScreenRect { frame.maxX() - *right, y, *right, inset };
    return result;
}

} // namespace

class NotchGeometryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheFirstScreenWithANotch_data()
    {
        const ScreenRect frame { 0, 0, 1512, 982 };
        const auto notched = screen(frame, 32, 664, 664);
        // A notch is null where there is none.
        const Rows<QList<Screen>, QRectF> row;
        row("no screen", {}, {});
        row("no inset", { screen(frame, 0, 664, 664) }, {});
        row("no left area", { screen(frame, 32, {}, 664) }, {});
        row("no right area", { screen(frame, 32, 664, {}) }, {});
        row("areas meet", { screen(frame, 32, 756, 756) }, {});
        row("areas overlap", { screen(frame, 32, 800, 756) }, {});
        row("whole points", { notched }, QRectF(664, 950, 184, 32));
        row("a fraction wide", { screen(frame, 32, 663.3, 663.3) }, QRectF(663, 950, 186, 32));
        row("the second screen", { screen({ -1920, 0, 1920, 1080 }, 0, {}, {}), notched },
            QRectF(664, 950, 184, 32));
        row("left of the main screen", { screen({ -1512, -100, 1512, 982 }, 32, 664, 664) },
            QRectF(-848, 850, 184, 32));
    }
    void findsTheFirstScreenWithANotch()
    {
        const auto [screens, notch] = Rows<QList<Screen>, QRectF>::current();
        const auto geometry = NotchGeometry::find(screens);
        QCOMPARE(geometry.has_value(), !notch.isNull());
        if (geometry) {
            const auto& rect = geometry->notchRect;
            QCOMPARE(QRectF(rect.x, rect.y, rect.width, rect.height), notch);
            QCOMPARE(geometry->screenFrame, screens.last().frame);
        }
    }

    void hangsInTheMiddleOfTheNotch()
    {
        // Half points round away from zero.
        for (const auto& [notchX, expandedX] : { std::pair(664.5, 527.0), { -848.5, -987.0 } }) {
            const NotchGeometry geometry { { -2000, 0, 4000, 982 }, { notchX, 950, 184, 32 } };
            QCOMPARE(NotchPanel::frameFor(NotchState::Expanded, geometry, { 460, 258 }),
                (ScreenRect { expandedX, 724, 460, 258 }));
        }
    }
};

QTEST_GUILESS_MAIN(NotchGeometryTest)
#include "NotchGeometryTest.moc"
