#include "support/X11Desktop.h"

#include "linux/applications/DesktopEntries.h"
#include "linux/applications/X11Applications.h"
#include "support/Test.h"
#include "support/TestPanel.h"
#include "support/X11Main.h"
#include "support/XClient.h"

namespace {

const QPoint outsideOutline(570, 100);
const QPoint bareDesktop(1400, 900);
constexpr auto returnKey = 36;
constexpr auto letterKey = 39;

QPainterPath outline()
{
    QPainterPath path;
    path.addRoundedRect(100, 0, 200, 120, 20, 20);
    return path;
}

} // namespace

class X11DesktopTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void worksUnderEveryWindowManager_data()
    {
        const Rows<QString> row;
        for (const auto& command : { u"openbox --sm-disable"_s, u"openbox --sm-disable + picom"_s,
                 u"xfwm4 --compositor=off"_s, u"xfwm4 --compositor=on"_s, u"i3 -c %1/i3"_s,
                 u"metacity --compositor=none"_s, u"metacity --compositor=xrender"_s, u"kwin_x11"_s })
            row(qPrintable(command), command);
    }
    void worksUnderEveryWindowManager()
    {
        const auto [command] = Rows<QString>::current();
        QVERIFY(m_desktop->start(command.section(u" + "_s, 0, 0)));
        if (command.contains(u'+'))
            QVERIFY(m_desktop->startCompositor());
        for (const auto check : { &X11DesktopTest::panelStaysAboveFullScreenAndTakesNoFocus,
                 &X11DesktopTest::keyboardComesAndGoesBack,
                 &X11DesktopTest::clickOnTheBareDesktopTakesTheKeyboard,
                 &X11DesktopTest::stackStaysWhenTheKeyboardGoesBack }) {
            (this->*check)();
            if (QTest::currentTestFailed())
                return;
        }
    }

private:
    void panelStaysAboveFullScreenAndTakesNoFocus()
    {
        XClient editor("Editor");
        QVERIFY(m_desktop->bringUp(editor));
        TestPanel panel;
        panel->orderFront();
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
        QTRY_COMPARE(m_user->pixelAt(TestPanel::middle), TestPanel::color);
        QVERIFY(editor.isActive());

        XClient film("Film");
        QVERIFY(m_desktop->bringUp(film, true));
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
        QTRY_COMPARE(m_user->pixelAt(TestPanel::middle), TestPanel::color);
        m_user->click(TestPanel::middle);
        QTRY_COMPARE(panel.clicks(), 1);
        QTest::qWait(100);
        QVERIFY(film.isActive());
        QCOMPARE(film.clicks(), 0);
    }

    void keyboardComesAndGoesBack()
    {
        XClient editor("Editor");
        QVERIFY(m_desktop->bringUp(editor));
        TestPanel panel;
        panel->setOutline(outline());
        panel->orderFront();
        QSignalSpy resigned(&panel.port(), &PanelWindow::resignedKey);
        QSignalSpy pressed(&panel.port(), &PanelWindow::keyPressed);

        panel->makeKey();
        QVERIFY(panel->isKey());
        QTRY_COMPARE(m_user->focus(), panel.id());
        m_user->type({ returnKey });
        QTRY_COMPARE(pressed.size(), 1);
        QVERIFY(editor.keys().isEmpty());
        panel->resignKey();
        QTRY_VERIFY(editor.hasFocus());
        m_user->type({ letterKey });
        QTRY_COMPARE(editor.keys().size(), 2);
        QCOMPARE(pressed.size(), 1);
        QCOMPARE(resigned.size(), 0);

        // Another program comes to the front while the panel has the keyboard.
        panel->makeKey();
        XClient intruder("Intruder");
        QVERIFY(m_desktop->bringUp(intruder));
        QTRY_COMPARE(resigned.size(), 1);
        QVERIFY(!panel->isKey());
        panel->resignKey();
        QTRY_VERIFY(intruder.hasFocus());

        // The program that had the keyboard is gone when the panel closes.
        panel->makeKey();
        QVERIFY(panel->isKey());
        intruder.destroy();
        QTest::qWait(100);
        panel->orderOut();
        QVERIFY(!panel->hasReturnedKey());
        QTRY_VERIFY(m_user->focus() != panel.id() && m_user->focus() != XCB_NONE);
    }

    void clickOnTheBareDesktopTakesTheKeyboard()
    {
        XClient editor("Editor");
        // A tiling window manager leaves no bare desktop beside a window.
        QVERIFY(isTiling() || m_desktop->bringUp(editor));
        TestPanel panel;
        panel->setOutline(outline());
        panel->orderFront();
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
        QSignalSpy resigned(&panel.port(), &PanelWindow::resignedKey);
        panel->makeKey();
        QTRY_COMPARE(m_user->focus(), panel.id());
        m_user->click(TestPanel::middle);
        QTest::qWait(200);
        QVERIFY(panel->isKey());

        m_user->click(bareDesktop);
        QTRY_COMPARE(resigned.size(), 1);
        QVERIFY(!panel->isKey());
        QTRY_VERIFY(m_user->focus() != panel.id() && m_user->focus() != XCB_NONE);
        panel->makeKey();
        QVERIFY(panel->isKey());
    }

    void stackStaysWhenTheKeyboardGoesBack()
    {
        XClient editor("Editor");
        QVERIFY(m_desktop->bringUp(editor));
        XClient film("Film", QRect(300, 400, 400, 300));
        QVERIFY(m_desktop->bringUp(film));
        // As where the focus follows the mouse. One window manager refuses that; one has no stack.
        if (!isTiling())
            editor.takeFocus();
        auto& front = QTest::qWaitFor([&editor] { return editor.isActive(); }, 1000) ? editor : film;
        QVERIFY(front.isActive() || m_desktop->bringUp(front));
        const auto top = m_user->topAt({ 350, 450 });
        TestPanel panel;
        panel->orderFront();
        panel->makeKey();
        QTRY_COMPARE(m_user->focus(), panel.id());
        panel->resignKey();
        QVERIFY(panel->hasReturnedKey());
        QTest::qWait(100);
        // For a window manager that hears of it late the window is active, then not, then again.
        QVERIFY(QTest::qWaitFor([&front] { return front.isActive(); }, 5000));
        QCOMPARE(m_user->topAt({ 350, 450 }), top);
    }

private Q_SLOTS:
    void clicksOutsideTheOutlineReachWhatIsBelow()
    {
        QVERIFY(m_desktop->start(u"openbox --sm-disable"_s));
        XClient film("Film");
        QVERIFY(m_desktop->bringUp(film, true));
        TestPanel panel;
        panel->orderFront();
        panel->setOutline(outline());
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
        QTRY_COMPARE(m_user->pixelAt(TestPanel::middle), TestPanel::color);
        const auto white = 0xffffffU;

        m_user->click(outsideOutline);
        QTRY_COMPARE(film.clicks(), 1);
        QTRY_COMPARE(m_user->pixelAt(outsideOutline), white);

        // With a compositing manager the picture is the panel's own business, edge and all.
        QVERIFY(m_desktop->startCompositor());
        QTRY_COMPARE(m_user->pixelAt(outsideOutline), TestPanel::color);
        QTRY_COMPARE(m_user->pixelAt(TestPanel::middle), TestPanel::color);
        m_user->click(outsideOutline);
        QTRY_COMPARE(film.clicks(), 2);
        m_user->click(TestPanel::middle);
        QTest::qWait(50);
        QCOMPARE(film.clicks(), 2);

        m_desktop->stopCompositor();
        QTRY_COMPARE(m_user->pixelAt(outsideOutline), white);
        QTRY_COMPARE(m_user->pixelAt(TestPanel::middle), TestPanel::color);
        panel->setOutline({});
        QTRY_VERIFY(m_user->topAt(TestPanel::middle) != panel.id());
        m_user->click(TestPanel::middle);
        QTRY_COMPARE(film.clicks(), 3);
    }

    void windowThatAlsoWantsToBeOnTopIsNotFoughtForEver()
    {
        XClient rival("Rival", QRect(0, 0, 1512, 300));
        rival.map();
        TestPanel panel;
        panel->orderFront();
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
        auto raises = 0;
        for (auto i = 0; i < 50; ++i) {
            rival.restack();
            raises += QTest::qWaitFor([&] { return m_user->topAt(TestPanel::middle) == panel.id(); }, 10) ? 1
                                                                                                          : 0;
        }
        QVERIFY2(raises > 0 && raises <= 16, qPrintable(QString::number(raises)));
        // It has not given up either.
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
    }

    void staysBelowWhatCoversTheScreen()
    {
        constexpr QRect screen(0, 0, 1512, 982);
        TestPanel panel;
        panel->orderFront();
        const auto& cover = panel->cover();
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
        const auto raises = [&] {
            // What a window manager says makes the panel raise itself.
            XClient other("Other");
            other.map();
            other.restack();
            return QTest::qWaitFor([&] { return m_user->topAt(TestPanel::middle) == panel.id(); }, 300);
        };

        XClient locker("Locker", screen.adjusted(1, 1, -1, -1));
        locker.mapUnmanaged();
        QTRY_VERIFY(cover.isLocked());
        QVERIFY(!raises());
        panel->orderOut();
        panel->orderFront();
        QVERIFY(!raises());
        {
            // The panel of a program that starts only now.
            TestPanel late;
            QVERIFY(late->cover().isLocked());
            late->orderFront();
            QTest::qWait(50);
            QCOMPARE(m_user->topAt(TestPanel::middle), locker.window());
        }
        locker.setClickThrough(true);
        QTRY_VERIFY(!cover.isLocked());
        locker.setClickThrough(false);
        QTRY_VERIFY(cover.isLocked());
        locker.unmap();
        QTRY_VERIFY(!cover.isLocked());
        panel->orderFront();
        QVERIFY(raises());

        // What is below the panel covers nothing, nor does a menu above it.
        XClient menu("Menu", { 600, 0, 400, 400 });
        menu.mapUnmanaged();
        QTRY_COMPARE(m_user->topAt({ 650, 200 }), menu.window());
        QTest::qWait(50);
        QVERIFY(!cover.isLocked());
        XClient film("Film", screen);
        film.map();
        film.restack();
        QTRY_COMPARE(m_user->topAt(TestPanel::middle), panel.id());
        QVERIFY(!cover.isLocked());
    }

    void init()
    {
        m_desktop = std::make_unique<X11Desktop>();
        m_user = std::make_unique<XClient>("User");
        QTRY_VERIFY(!m_user->isComposited());
    }
    void cleanup() { m_desktop.reset(); }

private:
    static bool isTiling() { return QByteArrayView(QTest::currentDataTag()).startsWith("i3"); }

    std::unique_ptr<X11Desktop> m_desktop;
    std::unique_ptr<XClient> m_user;
};

int main(int argc, char** argv)
{
    return runOnPrivateXServer<X11DesktopTest>(argc, argv);
}

#include "X11DesktopTest.moc"
