#include "notch/ControlFocus.h"
#include "preferences/L10n.h"
#include "qml/SurfaceFixture.h"
#include "style/Motion.h"
#include "support/Test.h"

#include <QRegularExpression>
#include <QStyleHints>

class SurfaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        L10n::setCurrent(L10n::English);
        Motion::instance().setReduced(true);
        m_surface = std::make_unique<SurfaceFixture>();
    }
    void cleanup() { m_surface.reset(); }

    void isExactlyTheNotchWhileCollapsed()
    {
        QCOMPARE(m_surface->shape()->outline(), NotchShape::path({ 0, 0, 184, 32 }, 0, 8));
        QVERIFY(!m_surface->find("ExpandedView"));
        QVERIFY(!m_surface->find("PeekView"));

        // Nothing moves and nothing ticks.
        m_surface->settle();
        QSignalSpy frames(&m_surface->view, &QQuickWindow::afterRendering);
        QTest::qWait(120);
        QCOMPARE(frames.count(), 0);
    }

    void nothingLiesBehindALargeNotch_data()
    {
        const Rows<QSizeF> row;
        row("usual", QSizeF(184, 32));
        row("scale 1.5", QSizeF(246, 42.67));
        row("scale 1.25", QSizeF(295, 51.2));
        row("scale 1", QSizeF(368, 64));
    }
    void nothingLiesBehindALargeNotch()
    {
        const auto [notch] = Rows<QSizeF>::current();
        m_surface.reset();
        m_surface = std::make_unique<SurfaceFixture>(notch);
        m_surface->keepAwake.activate(3599.0);
        m_surface->show(NotchState::Expanded);
        const QRectF behind((m_surface->view.width() - notch.width()) / 2, 0, notch.width(), notch.height());
        for (const auto* type :
            { "Line", "IconButton", "OwlButton", "NowPlayingColumn", "ClipboardColumn", "DayTimelineView" }) {
            for (auto which = 0; auto* const item = m_surface->find(type, which); ++which) {
                const auto place = item->mapRectToScene(item->boundingRect());
                QVERIFY2(!place.intersects(behind) && place.left() >= 0, type);
            }
        }
        // The content has what it is drawn for.
        QVERIFY(m_surface->find("NowPlayingColumn")->height() >= 172);
        QCOMPARE(m_surface->find("DayTimelineView")->height(), 8.0);

        m_surface->show(NotchState::Collapsed);
        m_surface->state.setPeek(PeekContent::make(u"link"_s, u"example.org"_s));
        m_surface->show(NotchState::Peek);
        QVERIFY(m_surface->shape()->outline().boundingRect().bottom() <= m_surface->view.height());
        QVERIFY(!m_surface->find("PeekView")
                     ->mapRectToScene({ 46 + notch.width(), 0, 150, 6 })
                     .intersects(QRectF(
                         (m_surface->view.width() - notch.width()) / 2, 0, notch.width(), notch.height())));
    }

    void staysOverTheNotchWhileTheWindowJumps()
    {
        Motion::instance().setReduced(false);
        const auto middle = [this] { return m_surface->shape()->outline().boundingRect().center().x(); };
        m_surface->view.resize(460, 258);
        QTRY_COMPARE(middle(), 230.0);
        QCOMPARE(m_surface->shape()->width(), 184.0);

        qreal widest = 0;
        QSignalSpy changes(m_surface->shape(), &NotchShape::outlineChanged);
        QObject::connect(m_surface->shape(), &NotchShape::outlineChanged, this, [&] {
            QCOMPARE(middle(), 230.0);
            widest = std::max(widest, m_surface->shape()->width());
        });
        m_surface->state.setMode(NotchState::Expanded);
        QTRY_COMPARE(m_surface->shape()->height(), 258.0);
        QVERIFY(changes.count() > 3);
        QVERIFY(widest > 460);
    }

    void isThereAtOnceWhenTheNotchIsFoundAndWithLessMotion()
    {
        Motion::instance().setReduced(false);
        auto geometry = *m_surface->state.geometry();
        geometry.notchRect = { 656, 944, 200, 38 };
        m_surface->state.setGeometry(geometry);
        QCOMPARE(m_surface->shape()->size(), QSizeF(200, 38));
        Motion::instance().setReduced(true);
        m_surface->state.setMode(NotchState::Expanded);
        QCOMPARE(m_surface->shape()->size(), QSizeF(460, 258));
    }

    void keepsTheLastNoticeWhileItFades()
    {
        m_surface->state.setPeek(PeekContent::make(u"link"_s, u"example.org"_s));
        m_surface->show(NotchState::Peek);
        Motion::instance().setReduced(false);
        // The window is 308 wider than the notch; the row reaches 46 to the left of it and 150 to the right.
        QTRY_COMPARE(m_surface->shape()->outline().boundingRect(), QRectF(104, 0, 388, 38));
        m_surface->state.setMode(NotchState::Collapsed);
        m_surface->state.setPeek({});
        auto* const peek = m_surface->find("PeekView");
        QVERIFY(peek);
        QCOMPARE(peek->property("content").value<PeekContent>().line, u"example.org"_s);
        QTRY_VERIFY(!m_surface->find("PeekView"));
    }

    void whatFadesAwayMindsNoMode()
    {
        Motion::instance().setReduced(false);
        for (int round = 0; round < 3; ++round) {
            m_surface->state.setMode(NotchState::Expanded);
            QTest::qWait(30);
            m_surface->state.setMode(NotchState::Collapsed);
            // Of what is let go nothing is destroyed yet while these events alone are handled.
            for (const QDeadlineTimer deadline(5s);
                 m_surface->find("ExpandedView") && !deadline.hasExpired();)
                QCoreApplication::processEvents();
            m_surface->state.setMode(NotchState::Expanded);
            m_surface->state.setCalendarExpanded(true);
            m_surface->state.setCalendarExpanded(false);
            m_surface->state.setMode(NotchState::Collapsed);
            QTest::qWait(5);
        }
    }

    void copiesAtAClick()
    {
        showTexts({ u"one"_s, u"two"_s });
        int exits = 0;
        tracker()->onExit = [&exits] { ++exits; };
        auto* const row = m_surface->find("ClipboardRow", 1);
        m_surface->click(row);
        QCOMPARE(m_surface->pasteboard.content.string, u"one"_s);
        QCOMPARE(m_surface->collapses, 0);
        QVERIFY(row->property("copiedFlash").toBool());
        QTRY_VERIFY(!row->property("copiedFlash").toBool());
        // A view inside that takes the pointer does not take it from the surface.
        QCOMPARE(exits, 0);

        // It closes when the click pastes.
        m_surface->history.settings.setPasteOnClick(true);
        m_surface->click(m_surface->find("ClipboardRow"));
        QCOMPARE(m_surface->collapses, 1);
        QCOMPARE(m_surface->keystrokes.pastes, 1);
        QVERIFY(!m_surface->find("ClipboardRow")->property("copiedFlash").toBool());
    }

    void actsOnAnEntryWithoutCopyingIt()
    {
        showTexts({ u"one"_s, u"two"_s, u"three"_s });
        m_surface->pasteboard.content.string = u"untouched"_s;
        auto* row = m_surface->find("ClipboardRow", 1);
        m_surface->moveTo(m_surface->middle(row));
        QVERIFY(row->property("hovered").toBool());

        m_surface->click(m_surface->button(row, u"Delete"_s));
        QCOMPARE(texts(), (QStringList { u"three"_s, u"one"_s }));
        // The pointer has not moved: what came under it is hovered, once what it was over has faded.
        QTRY_COMPARE(m_surface->find("ClipboardRow", 1)->property("summary"), u"one"_s);
        QTRY_VERIFY(m_surface->find("ClipboardRow", 1)->property("hovered").toBool());

        row = m_surface->find("ClipboardRow", 1);
        m_surface->click(m_surface->button(row, u"Pin"_s));
        QCOMPARE(texts(), (QStringList { u"one"_s, u"three"_s }));
        QCOMPARE(m_surface->pasteboard.content.string, u"untouched"_s);

        // With the pinned one left, the history is not empty; without it, it says so.
        m_surface->click(m_surface->find("TextButton"));
        QCOMPARE(texts(), QStringList { u"one"_s });
        m_surface->store().remove(m_surface->store().textualItems().constFirst().id);
        QTRY_VERIFY(m_surface->find("EmptyHistory"));
    }

    void scrollsByTheWheelAlone()
    {
        showTexts(numbered(12));
        m_surface->pasteboard.content.string = u"untouched"_s;
        auto* const list = m_surface->find("EntryList");
        m_surface->drag({ 200, 200 }, { 200, 120 });
        QCOMPARE(list->property("contentY").toReal(), 0.0);
        QCOMPARE(m_surface->pasteboard.content.string, u"untouched"_s);
        m_surface->wheel({ 200, 150 }, -240);
        QTRY_VERIFY(list->property("contentY").toReal() > 40);
    }

    void opensWhatADoubleClickIsOn_data()
    {
        const Rows<QString, QList<QUrl>> row;
        row("a link", u"https://example.org/a?b"_s, QList { QUrl(u"https://example.org/a?b"_s) });
        row("a text", u"words"_s, QList<QUrl>());
    }
    void opensWhatADoubleClickIsOn()
    {
        const auto [text, opened] = Rows<QString, QList<QUrl>>::current();
        showTexts({ text });
        const auto copies = m_surface->pasteboard.changeCount();
        QTest::mouseDClick(
            &m_surface->view, Qt::LeftButton, {}, m_surface->middle(m_surface->find("ClipboardRow")));
        QCOMPARE(m_surface->opener.opened, opened);
        // The first click has copied, and the second has not done it again.
        QCOMPARE(m_surface->pasteboard.changeCount(), copies + 1);
        QCOMPARE(m_surface->pasteboard.content.string, text);
    }

    void opensAnEventOnce()
    {
        auto& time = m_surface->history.time;
        const auto start = time.wallTime().toLocalTime().date().startOfDay();
        time.advance(std::chrono::seconds(time.wallTime().secsTo(start.addSecs(12 * 3600))));
        auto call
            = FakeCalendarStore::event(u"Call"_s, start.addSecs(12 * 3600), start.addSecs(12 * 3600 + 1500));
        call.identifier = u"call"_s;
        call.location = u"https://zoom.us/j/1"_s;
        *m_surface->calendarStore.held << call;
        addWholeDays(start);
        m_surface->calendar.start();
        m_surface->state.setCalendarExpanded(true);
        m_surface->state.setExpandedSize({ 460, 322 });
        m_surface->show(NotchState::Expanded);
        auto& opened = m_surface->opener.opened;
        constexpr auto interval = 100;
        QGuiApplication::styleHints()->setMouseDoubleClickInterval(interval);
        const auto doubleClick = [this](const QPoint& place) {
            // Long enough after the last one that it is no third click.
            QTest::qWait(interval + 50);
            QTest::mouseDClick(&m_surface->view, Qt::LeftButton, {}, place);
        };

        auto* const block = m_surface->find("EventBlock");
        doubleClick(block->mapToScene(QPointF(1, block->height() / 2)).toPoint());
        QCOMPARE(opened, QList { QUrl(u"ical://ekevent/call"_s) });
        auto* const join = SurfaceFixture::button(block, u"Join"_s);
        QVERIFY(join);
        doubleClick(SurfaceFixture::middle(join));
        QCOMPARE(opened.sliced(1), QList { QUrl(u"https://zoom.us/j/1"_s) });
        auto* const chip = m_surface->find("AllDayChip");
        doubleClick(SurfaceFixture::middle(chip));
        QCOMPARE(opened.sliced(2), QList { QUrl(u"ical://ekevent/day0"_s) });
        // A double click makes an event only where there is none.
        QVERIFY(m_surface->calendarStore.made.isEmpty());

        // What does not fit is reached by the wheel.
        auto* const last = m_surface->find("AllDayChip", 5);
        QVERIFY(SurfaceFixture::middle(last).x() > 460);
        m_surface->wheel(SurfaceFixture::middle(chip), -120);
        QTRY_VERIFY(SurfaceFixture::middle(chip).x() < 0);
    }

    void goesThroughTheDayByKey()
    {
        auto& time = m_surface->history.time;
        const auto start = time.wallTime().toLocalTime().date().startOfDay();
        auto& held = *m_surface->calendarStore.held;
        addWholeDays(start);
        held << FakeCalendarStore::event({}, start.addSecs(60), start.addSecs(3600));
        held.last().identifier = u"early"_s;
        held << FakeCalendarStore::event(u"Late"_s, start.addSecs(23 * 3600), start.addSecs(86'000));
        m_surface->calendar.start();
        m_surface->state.setExpandedSize({ 460, 322 });
        m_surface->show(NotchState::Expanded);
        QTRY_VERIFY(m_surface->view.isActive());
        auto& opened = m_surface->opener.opened;
        // The names of what the keys are on, until they have gone round; Return opens what can be opened.
        QStringList names;
        for (auto count = 0; count < 30; ++count) {
            QTest::keyClick(&m_surface->view, Qt::Key_Tab);
            m_surface->settle();
            const auto* const item = m_surface->view.activeFocusItem();
            const auto name = item->property("name").toString();
            if (QByteArray(item->metaObject()->className()).startsWith("AllDay")) {
                const auto left = item->mapToScene(QPointF()).x();
                QVERIFY2(left >= 14 && left + item->width() <= 446, qPrintable(QString::number(left)));
            }
            names << name;
            if (name == u"Late"_s)
                break;
        }
        QVERIFY(m_surface->state.calendarExpanded());
        QCOMPARE(names.last(3),
            (QStringList { u"A day that has rather a long name"_s, u"Untitled event"_s, u"Late"_s }));
        const auto* const late = m_surface->view.activeFocusItem();
        QVERIFY(late->mapToScene(QPointF(late->width(), 0)).x() <= 446);
        QTest::keyClick(&m_surface->view, Qt::Key_Return);
        QTest::keyClick(&m_surface->view, Qt::Key_Backtab);
        QTest::keyClick(&m_surface->view, Qt::Key_Return);
        QTest::keyClick(&m_surface->view, Qt::Key_Backtab);
        QTest::keyClick(&m_surface->view, Qt::Key_Return);
        QCOMPARE(opened,
            (QList { QUrl(u"ical://ekevent/Late"_s), QUrl(u"ical://ekevent/early"_s),
                QUrl(u"ical://ekevent/day5"_s) }));
        m_surface->view.activeFocusItem()->setFocus(false);
        QTRY_VERIFY(!m_surface->state.calendarExpanded());
    }

    void choosesWhereToShareOnce_data()
    {
        const Rows<QByteArray, bool> row;
        row("title", "title", false);
        row("beside", "beside", true);
        row("second row", "row", true);
        row("Escape", "Escape", true);
    }
    void choosesWhereToShareOnce()
    {
        const auto [what, closes] = Rows<QByteArray, bool>::current();
        auto holds = 0;
        m_surface->actions.onHold = [&holds] { ++holds; };
        m_surface->actions.onRelease = [&holds] { --holds; };
        showTexts({ u"https://example.org"_s });
        auto* const entry = m_surface->find("ClipboardRow");
        m_surface->moveTo(m_surface->middle(entry));
        QTRY_VERIFY(m_surface->button(entry, u"Share"_s));
        m_surface->click(m_surface->button(entry, u"Share"_s));
        // They have their places, one below the other, with the next frame.
        QTRY_VERIFY(m_surface->findAll("ShareChoiceRow").size() > 1);
        QTRY_VERIFY(m_surface->find("ShareChoiceRow", 1)->y() > m_surface->find("ShareChoiceRow")->y());
        QCOMPARE(holds, 1);
        const auto title = m_surface->middle(m_surface->find("ShareChooser")) - QPoint(0, 50);
        const auto row = m_surface->middle(m_surface->find("ShareChoiceRow", 1));

        Motion::instance().setReduced(false);
        if (what == "Escape")
            QTest::keyClick(&m_surface->view, Qt::Key_Escape);
        else
            m_surface->click(what == "row" ? row : what == "beside" ? QPoint(300, 220) : title);
        QCOMPARE(holds, closes ? 0 : 1);
        QCOMPARE(m_surface->handoff.sharing() == nullptr, closes);
        QCOMPARE(m_surface->sharePicker.used == ShareService::OpenWith, what == "row");
        QCOMPARE(m_surface->sharePicker.shared == QList<ShareItem> { QUrl(u"https://example.org"_s) },
            what == "row");

        // While it fades there is nobody to tell, and nothing below it can be reached.
        m_surface->sharePicker.used.reset();
        if (closes)
            m_surface->click(row);
        QVERIFY(!m_surface->sharePicker.used);
        QTRY_COMPARE(m_surface->find("ShareChooser") == nullptr, closes);

        // Who closes the surface, from the keyboard say, does not want to share any more.
        m_surface->state.setMode(NotchState::Collapsed);
        QTRY_COMPARE(holds, 0);
        QVERIFY(!m_surface->handoff.sharing());
    }

    void showsAnImageLargeWhileItIsHeldDown()
    {
        QImage image(80, 60, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        m_surface->addImage(image);
        m_surface->show(NotchState::Expanded);
        const auto place = m_surface->middle(m_surface->find("ClipboardThumb"));
        QTest::mousePress(&m_surface->view, Qt::LeftButton, {}, place);
        QTRY_VERIFY(m_surface->state.hasPreview());
        m_surface->view.resize(m_surface->state.previewSize().toSize());
        m_surface->settle();
        auto* const preview = m_surface->find("PreviewOverlay");
        QVERIFY(preview);
        QCOMPARE(m_surface->shape()->outline().boundingRect().size(), QSizeF(760, 480));
        // As large as it is, in the middle.
        const auto middle = m_surface->middle(preview);
        const auto picture = m_surface->view.grabWindow();
        QCOMPARE(picture.pixelColor(middle + QPoint(38, 0)), QColor(Qt::darkCyan));
        QCOMPARE(picture.pixelColor(middle + QPoint(42, 0)), QColor(Qt::black));

        QTest::mouseRelease(&m_surface->view, Qt::LeftButton, {}, place);
        QVERIFY(!m_surface->state.hasPreview());
        QTRY_VERIFY(!m_surface->find("PreviewOverlay"));
        QVERIFY(m_surface->pasteboard.written.isEmpty());
    }

    void saysNothingOverAPreview()
    {
        m_surface->addImage(QImage(80, 60, QImage::Format_RGB32));
        m_surface->show(NotchState::Expanded);
        const auto help = L10n::text(L10n::Key::Settings);
        m_surface->moveTo(m_surface->middle(m_surface->button(help)));
        QTRY_VERIFY(m_surface->shows(help));
        m_surface->actions.preview(m_surface->store().imageItems().first().id);
        QTRY_VERIFY(!m_surface->shows(help));
    }

    void closesThePreviewOfAnEntryThatGoes()
    {
        m_surface->addImage(QImage(80, 60, QImage::Format_RGB32));
        m_surface->show(NotchState::Expanded);
        const auto place = m_surface->middle(m_surface->find("ClipboardThumb"));
        QTest::mousePress(&m_surface->view, Qt::LeftButton, {}, place);
        QTRY_VERIFY(m_surface->state.hasPreview());
        m_surface->store().clear();
        QTRY_VERIFY(!m_surface->state.hasPreview());
        QWindow elsewhere;
        elsewhere.resize(9, 9);
        QTest::mouseRelease(&elsewhere, Qt::LeftButton, {}, { 1, 1 });
    }

    void keepsTheSelectedEntryInSight()
    {
        showTexts(numbered(12));
        auto* const list = m_surface->find("EntryList");
        m_surface->state.setKeyboardMode(true);
        for (const auto row : { 9, 11, 0 }) {
            const auto id = m_surface->store().textualItems().at(row).id;
            m_surface->state.setSelection(id);
            m_surface->settle();
            auto* const item = selected();
            QVERIFY(item);
            QCOMPARE(item->property("itemId").toUuid(), id);
            const auto top = item->mapToItem(list, QPointF()).y();
            QVERIFY2(top >= 0 && top + item->height() <= list->height(), qPrintable(QString::number(top)));
        }
        m_surface->state.setKeyboardMode(false);
        QVERIFY(!selected());
    }

    void keysLeaveAControlThatIsGone()
    {
        ControlFocus focus(m_surface->view);
        showTexts({ u"one"_s });
        QTRY_VERIFY(m_surface->view.isActive());
        for (auto i = 0; i < 5 && !m_surface->find("TextButton")->hasActiveFocus(); ++i)
            QTest::keyClick(&m_surface->view, Qt::Key_Tab);
        QVERIFY(focus.isOnControl());
        QTest::keyClick(&m_surface->view, Qt::Key_Return);
        QVERIFY(m_surface->store().isEmpty());
        QVERIFY(!focus.isOnControl());
        // Clear is there again, but nobody has gone to it.
        showTexts({ u"two"_s });
        QTest::keyClick(&m_surface->view, Qt::Key_Return);
        QVERIFY(!m_surface->store().isEmpty());
    }

    void showsImagesBesideTheRest()
    {
        showTexts({ u"one"_s });
        QVERIFY(!m_surface->find("ImageStrip"));
        QImage image(80, 60, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        m_surface->addImage(image);
        m_surface->settle();
        auto* const thumb = m_surface->find("ClipboardThumb");
        QVERIFY(thumb);
        const auto centre = m_surface->middle(thumb);
        QCOMPARE(m_surface->view.grabWindow().pixelColor(centre), QColor(Qt::darkCyan));

        m_surface->click(centre);
        QVERIFY(!m_surface->pasteboard.written.isEmpty());
        QVERIFY(thumb->property("copiedFlash").toBool());
        QTRY_VERIFY(!thumb->property("copiedFlash").toBool());
        m_surface->click(m_surface->button(thumb, u"Delete"_s));
        QTRY_VERIFY(!m_surface->find("ImageStrip"));
        QVERIFY(m_surface->store().imageItems().isEmpty());
    }

    void leadsToWhoCanBeSupported()
    {
        m_surface->show(NotchState::Expanded);
        m_surface->click(m_surface->button(u"Settings"_s));
        QTRY_VERIFY(m_surface->find("SettingsColumn"));
        m_surface->wheel(m_surface->middle(m_surface->find("SettingsColumn")), -2400);
        m_surface->settle();
        // Until then a click stops the page and does nothing else.
        for (auto* const page : m_surface->find("SettingsColumn")->childItems())
            QTRY_VERIFY(!page->property("moving").toBool());
        m_surface->click(m_surface->find("TextButton", 1));
        QCOMPARE(m_surface->opener.opened, QList { About::supportUrl() });
    }

    void remarksOnWhatStandsInTheWay()
    {
        const auto remarks = [this] {
            QStringList remarks;
            for (auto which = 0; auto* const note = m_surface->find("SettingsNote", which); ++which)
                remarks << note->property("text").toString();
            return remarks;
        };
        m_surface->show(NotchState::Expanded);
        m_surface->state.setShowSettings(true);
        m_surface->settle();
        auto& settings = m_surface->history.settings;
        QCOMPARE(remarks(), QStringList());
        m_surface->history.trust.trusted = false;
        settings.setPasteOnClick(true);
        settings.applyPasteOnClick();
        QCOMPARE(remarks(), QStringList { L10n::text(L10n::Key::AccessibilityHint) });
        const Capability lacking { Capability::State::NotHere, u"by hand"_s, u"руками"_s };
        m_surface->capabilities.set(Capabilities::Part::Paste, [lacking] { return lacking; });
        m_surface->capabilities.set(Capabilities::Part::HotKey, [lacking] { return lacking; });
        m_surface->about.refresh();
        QCOMPARE(remarks(), QStringList({ u"by hand"_s, u"by hand"_s }));
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(remarks(), QStringList({ u"руками"_s, u"руками"_s }));
        L10n::setCurrent(L10n::English);
        settings.setHotKeyEnabled(false);
        QCOMPARE(remarks(), QStringList { u"by hand"_s });
        m_surface->history.loginItem.error = u"The disk is full"_s;
        settings.setLaunchAtLogin(true);
        settings.applyLaunchAtLogin();
        QCOMPARE(remarks().constFirst(), u"Launch at login could not be changed: The disk is full"_s);

        // Without the calendar the page is lower; its end is within reach all the same, and at both ends it
        // says so.
        m_surface->state.setExpandedSize({ 460, 240 });
        m_surface->view.resize(460, 240);
        m_surface->settle();
        auto* const page = m_surface->find("SettingsColumn");
        const auto lowest = [&] {
            const auto lines = m_surface->findAll("Line");
            const auto* version = *std::ranges::find_if(lines,
                [](const QQuickItem* line) { return line->property("text").toString() == About::version(); });
            return version->mapRectToItem(page, version->boundingRect()).bottom();
        };
        const auto edges = [&] { return m_surface->findAll("EdgeFade").size(); };
        QVERIFY(lowest() > page->height());
        QCOMPARE(edges(), 1);
        m_surface->wheel(m_surface->middle(page), -120);
        m_surface->settle();
        QCOMPARE(edges(), 2);
        for (auto turns = 0; turns < 10; ++turns)
            m_surface->wheel(m_surface->middle(page), -1200);
        QTRY_VERIFY(lowest() <= page->height());
        QTRY_COMPARE(edges(), 1);
    }

    void takesTextsAsTheyAre()
    {
        showTexts({ u"<b>bold</b> &amp; <img src='file:///nowhere.png'>"_s });
        auto* const row = m_surface->find("ClipboardRow");
        QCOMPARE(row->property("title"), u"<b>bold</b> &amp; <img src='file:///nowhere.png'>"_s);
        for (const auto* const line : m_surface->findAll("Line"))
            QCOMPARE(line->property("textFormat").toInt(), int(Qt::PlainText));
        QVERIFY(m_surface->shows(row->property("title").toString()));
    }

    void fitsInBothLanguages_data()
    {
        const Rows<L10n::Resolved> row;
        row("English", L10n::English);
        row("Ukrainian", L10n::Ukrainian);
    }
    void fitsInBothLanguages()
    {
        const auto [language] = Rows<L10n::Resolved>::current();
        L10n::setCurrent(language);
        QStringList seen;
        const auto addLines = [&] {
            for (const auto* const line : m_surface->findAll("Line")) {
                seen << line->property("text").toString();
                QVERIFY2(!line->property("truncated").toBool(), qPrintable(seen.constLast()));
            }
        };
        for (const auto key :
            { L10n::Key::SleepAllowedAgain, L10n::Key::PressPaste, L10n::Key::NothingOpensIt }) {
            m_surface->state.setPeek(PeekContent::make(u"photo"_s, L10n::text(key)));
            m_surface->show(NotchState::Peek);
            addLines();
        }
        m_surface->store().setSeesCopies(false);
        m_surface->show(NotchState::Expanded);
        addLines();
        // Nobody is asked for copies that the program may not read.
        QVERIFY(!m_surface->find("EmptyHistory"));
        m_surface->store().setSeesCopies(true);
        m_surface->state.setDropTargeted(true);
        m_surface->settle();
        addLines();
        m_surface->state.setDropTargeted(false);
        showTexts({ u"file"_s });
        m_surface->handoff.share(m_surface->store().items().first().id);
        m_surface->settle();
        addLines();
        for (const auto key : { L10n::Key::NothingOpensIt, L10n::Key::CopiesNotReadable,
                 L10n::Key::ClipboardEmpty, L10n::Key::DropHere, L10n::Key::ShareOpenWith })
            QVERIFY(seen.contains(L10n::text(key)));
    }

private:
    [[nodiscard]] HoverTrackingView* tracker() const
    {
        return qobject_cast<HoverTrackingView*>(m_surface->view.rootObject());
    }

    /// The surface, grown, with these texts; the last one is the newest.
    void showTexts(const QStringList& texts)
    {
        for (const auto& text : texts)
            m_surface->addText(text);
        m_surface->show(NotchState::Expanded);
    }

    /// Six, each for the whole day, which have no room beside each other.
    void addWholeDays(const QDateTime& start)
    {
        for (auto number = 0; number < 6; ++number) {
            auto day
                = FakeCalendarStore::event(u"A day that has rather a long name"_s, start, start.addDays(1));
            day.identifier = u"day%1"_s.arg(number);
            day.isAllDay = true;
            *m_surface->calendarStore.held << day;
        }
    }

    [[nodiscard]] static QStringList numbered(int count)
    {
        QStringList texts;
        for (auto number = 1; number <= count; ++number)
            texts << u"text %1"_s.arg(number);
        return texts;
    }

    [[nodiscard]] QStringList texts() const
    {
        QStringList texts;
        for (const auto& item : m_surface->store().textualItems())
            texts << item.text.value_or(QString());
        return texts;
    }

    [[nodiscard]] QQuickItem* selected() const
    {
        for (auto which = 0; auto* const row = m_surface->find("ClipboardRow", which); ++which) {
            if (row->property("selected").toBool())
                return row;
        }
        return nullptr;
    }

    std::unique_ptr<SurfaceFixture> m_surface;
};

QTEST_MAIN(SurfaceTest)
#include "SurfaceTest.moc"
