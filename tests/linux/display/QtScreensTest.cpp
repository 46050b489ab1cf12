#include "linux/display/QtScreens.h"

#include "linux/display/ScreenCutouts.h"
#include "support/Test.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

class FakeCutouts final : public ScreenCutouts {
public:
    [[nodiscard]] NotchDeclaration declare(const QString& screen, QSize mode, const QRect& declared) override
    {
        box = declared;
        return { QStringLiteral("%1 %2x%3").arg(screen).arg(mode.width()).arg(mode.height()), {} };
    }
    [[nodiscard]] bool isBuiltIn(const QString& /*screen*/) const override { return false; }
    [[nodiscard]] std::optional<QRectF> topCutout(const QString& /*screen*/, QSize mode) const override
    {
        return mode.isEmpty() ? std::nullopt : box;
    }

    std::optional<QRectF> box;
};

} // namespace

class QtScreensTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void areasLieBesideTheCutout()
    {
        auto owned = std::make_unique<FakeCutouts>();
        auto* cutouts = owned.get();
        QtScreens screens(std::move(owned));
        const double width = QGuiApplication::primaryScreen()->geometry().width();
        const double height = QGuiApplication::primaryScreen()->geometry().height();
        QCOMPARE(screens.screens().first().frame, (ScreenRect { 0, -height, width, height }));
        QCOMPARE(screens.screens().first().topInset, 0);
        QVERIFY(!screens.screens().first().topLeftArea);

        cutouts->box = QRectF(300, 4, 200, 28);
        const auto screen = screens.screens().first();
        QCOMPARE(screen.topInset, 32);
        QCOMPARE(screen.topLeftArea, std::optional(ScreenRect { 0, -32, 300, 32 }));
        QCOMPARE(screen.topRightArea, std::optional(ScreenRect { 500, -32, width - 500, 32 }));
    }

    void manyChangesAreToldOnceAndNoneThatIsNone()
    {
        auto owned = std::make_unique<FakeCutouts>();
        auto* cutouts = owned.get();
        const QtScreens screens(std::move(owned));
        QSignalSpy changed(&screens, &QtScreens::changed);
        for (const auto& box : { QRectF(1, 0, 5, 5), QRectF(2, 0, 5, 5), QRectF(300, 0, 200, 32) }) {
            cutouts->box = box;
            Q_EMIT cutouts->changed();
        }
        QVERIFY(changed.wait());
        Q_EMIT cutouts->changed();
        QVERIFY(!changed.wait(100));
        QCOMPARE(changed.size(), 1);
    }
};

QTEST_MAIN(QtScreensTest)
#include "QtScreensTest.moc"
