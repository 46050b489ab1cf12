#include "linux/display/DisplayChoice.h"

#include <QTest>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

const QString layers = u"layers"_s;
const QString plain = u"plain"_s;
const QString dead = u"dead"_s;

DisplayFacts facts(const QString& requested, const QString& wayland, const QString& x11)
{
    return { requested, wayland, x11, wayland == layers || wayland == plain, wayland == layers,
        [answers = !x11.isEmpty() && x11 != dead] { return answers; } };
}

} // namespace

class DisplayChoiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theBestThatWorksIsChosen_data()
    {
        QTest::addColumn<QString>("requested");
        QTest::addColumn<QString>("wayland");
        QTest::addColumn<QString>("x11");
        QTest::addColumn<QString>("platform");
        QTest::addColumn<DisplaySystem>("system");
        using enum DisplaySystem;
        const QString none;
        QTest::newRow("layers alone") << none << layers << none << u"wayland"_s << Wayland;
        QTest::newRow("layers and an X server") << none << layers << u":0"_s << u"wayland"_s << Wayland;
        QTest::newRow("no layers") << none << plain << u":0"_s << u"xcb"_s << XWayland;
        QTest::newRow("a compositor that is gone") << none << dead << u":0"_s << u"xcb"_s << X11;
        QTest::newRow("an X server alone") << none << none << u":0"_s << u"xcb"_s << X11;
        QTest::newRow("X asked for") << u"xcb"_s << layers << u":0"_s << u"xcb"_s << XWayland;
        QTest::newRow("with arguments")
            << u"wayland-egl:a"_s << layers << none << u"wayland-egl:a"_s << Wayland;
        QTest::newRow("first choice") << u"wayland;xcb"_s << layers << u":0"_s << u"wayland"_s << Wayland;
        QTest::newRow("second choice") << u"wayland;xcb"_s << plain << u":0"_s << u"xcb"_s << XWayland;
        QTest::newRow("third choice") << u"offscreen;wayland;xcb"_s << none << u":0"_s << u"xcb"_s << X11;
    }

    void theBestThatWorksIsChosen()
    {
        QFETCH(QString, requested);
        QFETCH(QString, wayland);
        QFETCH(QString, x11);
        QFETCH(QString, platform);
        QFETCH(DisplaySystem, system);
        QCOMPARE(chooseDisplay(facts(requested, wayland, x11)), (DisplayChoice { system, platform, {} }));
    }

    void noXServerIsWokenForNothing()
    {
        auto asked = facts({}, layers, u":0"_s);
        asked.x11Answers = [] { return qFatal("The X server was asked."), false; };
        QCOMPARE(chooseDisplay(asked).system, DisplaySystem::Wayland);
    }

    void whatCannotWorkIsRefusedWithTheReason_data()
    {
        QTest::addColumn<QString>("requested");
        QTest::addColumn<QString>("wayland");
        QTest::addColumn<QString>("x11");
        QTest::addColumn<QStringList>("said");
        const QString none;
        QTest::newRow("nothing") << none << none << none
                                 << QStringList { u"WAYLAND_DISPLAY"_s, u" DISPLAY"_s };
        QTest::newRow("no X server") << none << none << dead << QStringList { dead };
        QTest::newRow("no layers, no X server")
            << none << plain << none << QStringList { plain, u" DISPLAY"_s };
        QTest::newRow("all gone") << none << dead << u""_s << QStringList { dead };
        QTest::newRow("offscreen") << u"offscreen"_s << layers << u":0"_s << QStringList { u"=offscreen"_s };
        QTest::newRow("no layers") << u"wayland"_s << plain << u":0"_s
                                   << QStringList { u"layer shell"_s, u"=wayland"_s };
        QTest::newRow("no compositor")
            << u"wayland"_s << none << u":0"_s << QStringList { u"WAYLAND_DISPLAY"_s, u"=wayland"_s };
        QTest::newRow("X that is gone") << u"xcb"_s << layers << dead << QStringList { dead };
    }

    void whatCannotWorkIsRefusedWithTheReason()
    {
        QFETCH(QString, requested);
        QFETCH(QString, wayland);
        QFETCH(QString, x11);
        QFETCH(QStringList, said);
        const auto obstacle = chooseDisplay(facts(requested, wayland, x11)).obstacle;
        for (const auto& words : std::as_const(said))
            QVERIFY2(obstacle.contains(words), qPrintable(obstacle));
        QVERIFY2(!obstacle.contains(u'\n') && obstacle.endsWith(u'.'), qPrintable(obstacle));
    }
};

QTEST_APPLESS_MAIN(DisplayChoiceTest)
#include "DisplayChoiceTest.moc"
