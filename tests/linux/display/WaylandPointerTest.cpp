#include "linux/display/WaylandPointer.h"

#include "qt/FlippedAxis.h"
#include "support/Test.h"

namespace {

const QRect notch(100, 0, 80, 32);
const QRect notice(40, 0, 200, 60);
constexpr QPointF inNotch(140, 10.5);
constexpr QPointF besideNotch(60, 10.5);

using Steps = std::function<void(WaylandPointer&)>;

} // namespace

class WaylandPointerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyMotionCounts_data()
    {
        const Rows<std::optional<QPointF>, Steps> row;
        row("into the notch", inNotch, [](auto& pointer) { pointer.enter(inNotch); });
        row("out of it", std::nullopt, [](auto& pointer) {
            pointer.enter(inNotch);
            pointer.leave();
        });
        row("into the notch as a notice ends", inNotch, [](auto& pointer) {
            pointer.setOutline(notice);
            pointer.setOutline(notch);
            pointer.enter(inNotch);
        });
        row("at rest where a notice comes", std::nullopt, [](auto& pointer) {
            pointer.setOutline(notice);
            pointer.enter(besideNotch);
        });
        row("on from there", besideNotch + QPointF(1, 0), [](auto& pointer) {
            pointer.setOutline(notice);
            pointer.enter(besideNotch);
            pointer.move(besideNotch + QPointF(1, 0));
        });
        row("at rest where a notice has gone and another comes", std::nullopt, [](auto& pointer) {
            pointer.setOutline(notice);
            pointer.enter(besideNotch);
            pointer.setOutline(notch);
            pointer.leave();
            pointer.setOutline(notice);
            pointer.enter(besideNotch);
        });
        row("at rest where the surface goes and comes", std::nullopt, [](auto& pointer) {
            pointer.enter(inNotch);
            pointer.loseSurface();
            pointer.leave();
            pointer.enter(inNotch);
        });
        row("at rest there, by less precise motion", std::nullopt, [](auto& pointer) {
            pointer.move(inNotch.toPoint());
            pointer.loseSurface();
            pointer.enter(inNotch);
        });
        row("elsewhere when the surface comes again", inNotch, [](auto& pointer) {
            pointer.move(inNotch + QPointF(1, 0));
            pointer.loseSurface();
            pointer.enter(inNotch);
        });
        row("out and back to the very place", inNotch, [](auto& pointer) {
            pointer.enter(inNotch);
            pointer.leave();
            pointer.enter(inNotch);
        });
        row("back into a notice that has stayed", besideNotch, [](auto& pointer) {
            pointer.setOutline(notice);
            pointer.enter(inNotch);
            pointer.leave();
            pointer.enter(besideNotch);
        });
    }
    void onlyMotionCounts()
    {
        const auto [place, steps] = Rows<std::optional<QPointF>, Steps>::current();
        WaylandPointer pointer;
        pointer.setOutline(notch);
        steps(pointer);
        QCOMPARE(pointer.location(), place ? flipped(*place) : pointerOutside);
    }
};

QTEST_GUILESS_MAIN(WaylandPointerTest)

#include "WaylandPointerTest.moc"
