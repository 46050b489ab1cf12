#include "linux/display/DisplayChoice.h"

#include "support/Test.h"

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
        const Rows<QString, QString, QString, QString, DisplaySystem> row;
        using enum DisplaySystem;
        const QString none;
        row("layers alone", none, layers, none, u"wayland"_s, Wayland);
        row("layers and an X server", none, layers, u":0"_s, u"wayland"_s, Wayland);
        row("no layers", none, plain, u":0"_s, u"xcb"_s, XWayland);
        row("a compositor that is gone", none, dead, u":0"_s, u"xcb"_s, X11);
        row("an X server alone", none, none, u":0"_s, u"xcb"_s, X11);
        row("X asked for", u"xcb"_s, layers, u":0"_s, u"xcb"_s, XWayland);
        row("with arguments", u"wayland-egl:a"_s, layers, none, u"wayland-egl:a"_s, Wayland);
        row("first choice", u"wayland;xcb"_s, layers, u":0"_s, u"wayland"_s, Wayland);
        row("second choice", u"wayland;xcb"_s, plain, u":0"_s, u"xcb"_s, XWayland);
        row("third choice", u"offscreen;wayland;xcb"_s, none, u":0"_s, u"xcb"_s, X11);
    }
    void theBestThatWorksIsChosen()
    {
        const auto [requested, wayland, x11, platform, system]
            = Rows<QString, QString, QString, QString, DisplaySystem>::current();
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
        const Rows<QString, QString, QString, QStringList> row;
        const QString none;
        row("nothing", none, none, none, { u"WAYLAND_DISPLAY"_s, u" DISPLAY"_s });
        row("no X server", none, none, dead, { dead });
        row("no layers, no X server", none, plain, none, { plain, u" DISPLAY"_s });
        row("all gone", none, dead, u""_s, { dead });
        row("offscreen", u"offscreen"_s, layers, u":0"_s, { u"=offscreen"_s });
        row("no layers", u"wayland"_s, plain, u":0"_s, { u"layer shell"_s, u"=wayland"_s });
        row("no compositor", u"wayland"_s, none, u":0"_s, { u"WAYLAND_DISPLAY"_s, u"=wayland"_s });
        row("X that is gone", u"xcb"_s, layers, dead, { dead });
    }
    void whatCannotWorkIsRefusedWithTheReason()
    {
        const auto [requested, wayland, x11, said] = Rows<QString, QString, QString, QStringList>::current();
        const auto obstacle = chooseDisplay(facts(requested, wayland, x11)).obstacle;
        for (const auto& words : std::as_const(said))
            QVERIFY2(obstacle.contains(words), qPrintable(obstacle));
        QVERIFY2(!obstacle.contains(u'\n') && obstacle.endsWith(u'.'), qPrintable(obstacle));
    }
};

QTEST_APPLESS_MAIN(DisplayChoiceTest)
#include "DisplayChoiceTest.moc"
