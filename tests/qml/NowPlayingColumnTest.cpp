#include "preferences/L10n.h"
#include "qml/SurfaceFixture.h"
#include "style/Motion.h"
#include "support/Test.h"

namespace {

const auto longTitle = u"A title that is far too long for a column of this width"_s;

} // namespace

class NowPlayingColumnTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Motion::instance().setReduced(true);
        m_surface = std::make_unique<SurfaceFixture>();
        m_surface->show(NotchState::Expanded);
    }
    void cleanup()
    {
        m_surface.reset();
        Motion::instance().setReduced(false);
        L10n::setCurrent(L10n::English);
    }

    void saysWhyNothingPlays()
    {
        L10n::setCurrent(L10n::Ukrainian);
        QTRY_VERIFY(m_surface->shows(u"Нічого не грає"_s));
        auto& player = m_surface->player;
        player.musicApp.state = MusicApp::Running { 7, u"Music"_s, {} };
        player.scripting.error = ScriptResult::Error { true, {} };
        player.command.call.reset();
        player.adapter().end();
        player.time.advance(1s);
        player.queues.runAll();
        QTRY_VERIFY(m_surface->shows(L10n::text(L10n::Key::MusicPermissionHint)));
    }

    void buttonsCommandThePlayer()
    {
        m_surface->play();
        m_surface->click(m_surface->button(u"Previous"_s));
        m_surface->click(m_surface->button(u"Play / pause"_s));
        m_surface->click(m_surface->button(u"Next"_s));
        QCOMPARE(commands(), QByteArrayList({ "previous\n", "toggle\n", "next\n" }));
        QCOMPARE(m_surface->button(u"Play / pause"_s)->property("symbol"), u"play.fill"_s);
        m_surface->play({ { u"playing"_s, true } });
        QCOMPARE(m_surface->button(u"Play / pause"_s)->property("symbol"), u"pause.fill"_s);
        m_surface->click(m_surface->find("TrackArtwork"));
        QCOMPARE(m_surface->player.applications.activated.size(), 1);
    }

    void dragOnTheBarSeeksOnceAtItsEnd()
    {
        m_surface->play({ { u"elapsed"_s, 65 } });
        QVERIFY(m_surface->shows(u"1:05"_s) && m_surface->shows(u"−2:15"_s));
        auto* const bar = m_surface->find("PlaybackProgress");
        int holds = 0;
        m_surface->actions.onHold = [&holds] { ++holds; };
        m_surface->actions.onRelease = [&holds] { --holds; };
        press(SurfaceFixture::placeIn(bar, 0.1, 0.2));
        moveTo(SurfaceFixture::placeIn(bar, 0.5, 0.2));
        QVERIFY(m_surface->shows(u"1:40"_s));
        QCOMPARE(commands(), QByteArrayList());
        // The pointer may leave the bar, and the window as well.
        moveTo({ 900, 10 });
        QCOMPARE(holds, 1);
        release({ 900, 10 });
        QCOMPARE(commands(), QByteArrayList { "seek 200.0\n" });
        QCOMPARE(holds, 0);
    }

    void trackOfUnknownLengthOrWithoutSeekingCannotBeSought()
    {
        for (const auto& members : { QJsonObject { { u"duration"_s, 0 } }, { { u"canSeek"_s, false } } }) {
            m_surface->play(members);
            auto* const bar = m_surface->find("PlaybackProgress");
            press(SurfaceFixture::placeIn(bar, 0.5, 0.2));
            QVERIFY(!m_surface->shows(u"1:40"_s));
            release(SurfaceFixture::placeIn(bar, 0.5, 0.2));
            QCOMPARE(commands(), QByteArrayList());
            QCOMPARE(m_surface->shows(u"0:00"_s), members.contains(u"canSeek"_s));
        }
    }

    void sliderSetsTheVolumeWhenLetGo()
    {
        m_surface->play();
        QVERIFY(!m_surface->find("VolumeSlider"));
        auto* const button = m_surface->button(u"Volume"_s);
        m_surface->click(button);
        m_surface->settle();
        auto* const slider = m_surface->find("VolumeSlider");
        QVERIFY(slider);
        QCOMPARE(slider->size(), QSizeF(7, 66));
        // What is not known is silent and stays so.
        press(SurfaceFixture::placeIn(slider, 0.5, 0.25));
        release(SurfaceFixture::placeIn(slider, 0.5, 0.25));
        QCOMPARE(commands(), QByteArrayList());
        QCOMPARE(button->property("symbol"), u"speaker.slash.fill"_s);

        m_surface->play({ { u"volume"_s, 50 } });
        QCOMPARE(button->property("symbol"), u"speaker.wave.2.fill"_s);
        press(SurfaceFixture::placeIn(slider, 0.5, 0.2));
        QCOMPARE(button->property("symbol"), u"speaker.wave.3.fill"_s);
        moveTo(SurfaceFixture::placeIn(slider, 0.5, 3));
        QCOMPARE(button->property("symbol"), u"speaker.slash.fill"_s);
        QCOMPARE(commands(), QByteArrayList());
        moveTo(SurfaceFixture::placeIn(slider, 0.5, -3));
        release(SurfaceFixture::placeIn(slider, 0.5, -3));
        QCOMPARE(commands(), QByteArrayList { "volume 100\n" });
        m_surface->click(button);
        QTRY_VERIFY(!m_surface->find("VolumeSlider"));
    }

    void keysReachAndUseAllOfIt()
    {
        m_surface->play({ { u"volume"_s, 50 }, { u"elapsed"_s, 65 } });
        const QList<std::pair<int, QByteArray>> steps {
            { Qt::Key_Return, {} }, // shows the player
            { Qt::Key_PageUp, "seek 75.0\n" },
            { Qt::Key_Return, "previous\n" },
            { Qt::Key_Space, "toggle\n" },
            { Qt::Key_Enter, "next\n" },
            { Qt::Key_Return, {} }, // opens the volume
            { Qt::Key_PageDown, "volume 45\n" },
        };
        QByteArrayList expected;
        for (auto i = 0; i < 9 && !m_surface->find("TrackArtwork")->hasActiveFocus(); ++i)
            QTest::keyClick(&m_surface->view, Qt::Key_Tab);
        for (const auto& [key, command] : steps) {
            QTest::keyClick(&m_surface->view, Qt::Key(key));
            if (!command.isEmpty())
                expected << command;
            QCOMPARE(commands(), expected);
            QTest::keyClick(&m_surface->view, Qt::Key_Tab);
            QTest::qWait(20);
        }
        QCOMPARE(m_surface->player.applications.activated.size(), 1);
    }

    void volumeHasASymbol()
    {
        QStringList symbols;
        for (const auto volume : { 0.5, 1.0, 39.9, 40.0, 74.9, 75.0 })
            symbols << NowPlayingModel::volumeSymbol(volume).remove(u"speaker."_s).remove(u".fill"_s);
        QCOMPARE(symbols,
            QStringList({ u"slash"_s, u"wave.1"_s, u"wave.1"_s, u"wave.2"_s, u"wave.2"_s, u"wave.3"_s }));
    }

    void timesAreReadable()
    {
        QCOMPARE(NowPlayingModel::timeText(-1), u"0:00"_s);
        QCOMPARE(NowPlayingModel::timeText(59.99), u"0:59"_s);
        QCOMPARE(NowPlayingModel::timeText(3600), u"1:00:00"_s);
        QCOMPARE(NowPlayingModel::timeText(36'061), u"10:01:01"_s);
        QVERIFY(NowPlayingModel::timeText(1e300).size() < 10);
    }

    void onlyATitleThatDoesNotFitMoves()
    {
        Motion::instance().setReduced(false);
        m_surface->play();
        auto* const title = m_surface->find("MarqueeText");
        QVERIFY(!title->property("active").toBool());
        m_surface->play({ { u"title"_s, longTitle } });
        QVERIFY(title->property("active").toBool());
        QTRY_VERIFY(title->property("offset").toDouble() < -1);
        // Another text begins at its beginning.
        m_surface->play({ { u"title"_s, longTitle.toUpper() } });
        QCOMPARE(title->property("offset").toDouble(), 0.0);
        Motion::instance().setReduced(true);
        QVERIFY(!title->property("active").toBool());
        Motion::instance().setReduced(false);
        QVERIFY(title->property("active").toBool());
        m_surface->find("NowPlayingColumn")->setProperty("shown", false);
        QVERIFY(!title->property("active").toBool());
        QCOMPARE(title->property("offset").toDouble(), 0.0);
    }

    void whatLooksTheSameIsNotDrawnAgain()
    {
        // The bar and the times of a long track hardly move.
        m_surface->play({ { u"playing"_s, true }, { u"duration"_s, 3000 } });
        m_surface->settle();
        QSignalSpy frames(&m_surface->view, &QQuickWindow::frameSwapped);
        QTest::qWait(200);
        QCOMPARE(frames.size(), 0);
        m_surface->player.time.advance(1s);
        QTRY_VERIFY(m_surface->shows(u"0:01"_s));
        QTest::qWait(100);
        QVERIFY(frames.size() >= 1 && frames.size() <= 2);

        m_surface->find("NowPlayingColumn")->setProperty("shown", false);
        QTest::qWait(50);
        frames.clear();
        m_surface->player.time.advance(1s);
        QTest::qWait(200);
        QCOMPARE(frames.size(), 0);
        QVERIFY(m_surface->shows(u"0:01"_s));
    }

private:
    void press(const QPoint& place) { QTest::mousePress(&m_surface->view, Qt::LeftButton, {}, place); }
    void moveTo(const QPoint& place) { QTest::mouseMove(&m_surface->view, place); }
    void release(const QPoint& place) { QTest::mouseRelease(&m_surface->view, Qt::LeftButton, {}, place); }
    [[nodiscard]] QByteArrayList commands() const
    {
        auto commands = m_surface->player.adapter().written;
        commands.removeAll("refresh\n");
        return commands;
    }

    std::unique_ptr<SurfaceFixture> m_surface;
};

QTEST_MAIN(NowPlayingColumnTest)
#include "NowPlayingColumnTest.moc"
