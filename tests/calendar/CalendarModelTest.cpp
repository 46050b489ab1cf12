#include "calendar/CalendarModel.h"

#include "calendar/DayTimeline.h"
#include "preferences/L10n.h"
#include "support/FakeCalendarStore.h"
#include "support/FakeDesktop.h"
#include "support/FakeScripting.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"
#include "support/Test.h"

#include <QLocale>
#include <QRegularExpression>

namespace {

struct Fixture {
    FakeCalendarStore store;
    FakeOpener opener;
    FakeScripting scripting;
    ManualTime time;
    ManualQueues queues;
    CalendarModel model { store, opener, scripting, time, time, queues };
    DayTimeline timeline { model, time, time, opener };
    QSignalSpy eventsChanged { &model, &CalendarModel::eventsChanged };

    [[nodiscard]] QDateTime today(int hour, int minute = 0) const
    {
        return time.wallTime().toLocalTime().date().startOfDay().addSecs((hour * 60 + minute) * 60);
    }

    CalendarEvent& add(const QString& title, int hour)
    {
        *store.held << FakeCalendarStore::event(title, today(hour), today(hour + 1));
        return store.held->last();
    }

    [[nodiscard]] QStringList titles()
    {
        queues.runAll();
        QStringList titles;
        for (const auto& event : model.events())
            titles << event.title;
        return titles;
    }
};

} // namespace

class CalendarModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { L10n::setCurrent(L10n::English); }

    void readsTheDay()
    {
        Fixture f;
        f.add(u"b"_s, 10);
        f.add(u"A"_s, 10);
        f.add(u"early"_s, 9);
        f.add(u"cancelled"_s, 9).status = CalendarEvent::Status::Cancelled;
        using enum CalendarEvent::Participation;
        f.add(u"declined"_s, 9).attendees = { { false, Accepted }, { true, Declined } };
        f.add(u"declined by others"_s, 11).attendees = { { false, Declined }, { true, Tentative } };
        f.model.start();
        f.model.start();
        QCOMPARE(f.titles(), (QStringList { u"early"_s, u"A"_s, u"b"_s, u"declined by others"_s }));
        QCOMPARE(f.store.asked.size(), 1);
        QCOMPARE(f.store.asked.constFirst().first, f.today(0));
        QCOMPARE(f.store.asked.constFirst().second.date(), f.today(0).date().addDays(1));
        f.model.refresh();
        f.queues.runAll();
        QCOMPARE(f.eventsChanged.count(), 1);

        f.model.stop();
        QCOMPARE(f.titles(), QStringList());
        f.model.refresh();
        Q_EMIT f.store.dayChanged();
        QCOMPARE(f.titles(), QStringList());
        f.model.start();
        QCOMPARE(f.titles().size(), 4);
    }

    void readsOnceAfterABurstOfChanges()
    {
        Fixture f;
        f.model.start();
        f.queues.runAll();
        for (auto change = 0; change < 3; ++change) {
            Q_EMIT f.store.changed();
            f.time.advance(300ms);
        }
        f.time.advance(699ms);
        f.queues.runAll();
        QCOMPARE(f.store.asked.size(), 1);
        f.time.advance(1ms);
        f.queues.runAll();
        QCOMPARE(f.store.asked.size(), 2);
    }

    void keepsTheEventsOfASilentStore()
    {
        Fixture f;
        f.add(u"a"_s, 9);
        f.model.start();
        QCOMPARE(f.titles(), QStringList { u"a"_s });
        f.store.held.reset();
        f.time.advance(24h);
        Q_EMIT f.store.dayChanged();
        QCOMPARE(f.titles(), QStringList { u"a"_s });
        // It is another day at once, whoever is silent.
        QCOMPARE(f.model.dayStart(), f.today(0));
        QCOMPARE(f.store.asked.last().first, f.today(0));
        for (const auto status : { CalendarStore::Authorization::WriteOnly,
                 CalendarStore::Authorization::Restricted, CalendarStore::Authorization::Denied }) {
            f.store.status = status;
            f.model.refresh();
            QCOMPARE(f.model.access(), CalendarAccess::Denied);
            QCOMPARE(f.titles(), QStringList { u"a"_s });
        }
    }

    void asksForAccessOnce()
    {
        Fixture f;
        f.store.status = CalendarStore::Authorization::NotDetermined;
        f.add(u"a"_s, 9);
        f.model.start();
        f.model.refresh();
        QCOMPARE(f.model.access(), CalendarAccess::NotDetermined);
        f.timeline.requestAccess();
        f.store.status = CalendarStore::Authorization::FullAccess;
        f.store.question(true);
        QCOMPARE(f.model.access(), CalendarAccess::Granted);
        QCOMPARE(f.titles(), QStringList { u"a"_s });
        f.timeline.requestAccess();
        QCOMPARE(f.opener.opened.size(), 1);
        QCOMPARE(f.opener.opened.constFirst().scheme(), u"x-apple.systempreferences"_s);
    }

    void answersAlsoWhenItIsGone()
    {
        auto answered = false;
        FakeCalendarStore store;
        {
            FakeOpener opener;
            FakeScripting scripting;
            ManualTime time;
            ManualQueues queues;
            CalendarModel model(store, opener, scripting, time, time, queues);
            model.requestAccess([&answered] { answered = true; });
        }
        store.question(true);
        QVERIFY(answered);
    }

    void opensAnOccurrenceByItsDay()
    {
        Fixture f;
        DayEvent event;
        event.id = u"one"_s;
        event.start = QDateTime(QDate(2026, 2, 28), QTime(9, 0));
        f.model.open(event);
        QCOMPARE(f.opener.opened, QList { QUrl(u"ical://ekevent/one"_s) });
        event.isRecurring = true;
        f.model.open(event);
        f.queues.runAll();
        QCOMPARE(f.opener.opened.size(), 1);
        QCOMPARE(f.scripting.scripts.constFirst(),
            u"tell application \"Calendar\"\n    set d to current date\n    set time of d to 0\n"
            "    set day of d to 1\n    set year of d to 2026\n    set month of d to 2\n    set day of d to "
            "28\n"
            "    switch view to day view\n    view calendar at d\n    activate\nend tell"_s);
        f.scripting.error = ScriptResult::Error { false, u"no such service"_s };
        QTest::ignoreMessage(QtCriticalMsg, "Calendar AppleScript failed: no such service");
        f.model.open(event);
        f.queues.runAll();
        QCOMPARE(f.opener.opened.size(), 2);
    }

    void makesAnEventInTheQuarterOfAnHour()
    {
        // Also at the end of the day, and before it.
        for (const auto& [x, time] : { std::pair(500.0, QTime(9, 15)), { 486.0, QTime(9, 0) },
                 { 1295.0, QTime(23, 45) }, { -3.0, QTime(0, 0) } }) {
            Fixture f;
            f.timeline.createAt(x);
            QCOMPARE(f.store.made.size(), 1);
            QCOMPARE(f.store.made.constFirst().start.time(), time);
            QCOMPARE(f.store.made.constFirst().start.secsTo(f.store.made.constFirst().end), 3600);
            QCOMPARE(f.store.made.constFirst().title, u"New Event"_s);
            QCOMPARE(f.opener.opened, QList { QUrl(u"ical://ekevent/new"_s) });
        }
    }

    void makesNothingWhereItCannot()
    {
        Fixture f;
        f.store.answer = { CalendarStore::CreateError::Failed, u"disk full"_s, {} };
        QTest::ignoreMessage(QtCriticalMsg, "Creating an event failed: disk full");
        f.timeline.createAt(0);
        f.store.answer = { CalendarStore::CreateError::NoDefaultCalendar, {}, {} };
        QTest::ignoreMessage(QtCriticalMsg, "No default calendar for new events");
        f.timeline.createAt(0);
        f.store.status = CalendarStore::Authorization::Denied;
        f.model.start();
        f.timeline.createAt(0);
        QCOMPARE(f.store.made.size(), 2);
        QVERIFY(f.opener.opened.isEmpty());
    }

    void followsTheClockWhileItIsSeen()
    {
        Fixture f;
        f.model.start();
        f.queues.runAll();
        f.timeline.setActive(true);
        const auto before = f.timeline.nowX();
        f.time.advance(10min);
        QCOMPARE(qRound(f.timeline.nowX() - before), 9);
        f.timeline.setActive(false);
        f.time.advance(1h);
        QCOMPARE(qRound(f.timeline.nowX() - before), 9);
    }

    void showsOfACrowdedDayWhatIsInSight()
    {
        Fixture f;
        const auto places = [&f] {
            QList<double> places;
            for (auto row = 0; row < f.timeline.blocks()->rowCount(); ++row) {
                const auto block = f.timeline.blocks()->index(row).data(Qt::UserRole);
                places << block.value<timelinelayout::Placement>().x;
            }
            return places;
        };
        for (auto number = 0; number < 96; ++number)
            *f.store.held << FakeCalendarStore::event(
                {}, f.today(0, number * 15), f.today(0, number * 15 + 15));
        f.model.start();
        f.queues.runAll();
        f.timeline.setSight(400, 400);
        QCOMPARE(places().size(), 96);
        for (auto number = 0; number < 288; ++number)
            *f.store.held << FakeCalendarStore::event({}, f.today(0, number * 5), f.today(0, number * 5 + 5));
        f.model.refresh();
        f.queues.runAll();
        const auto all = places();
        QVERIFY(all.size() < 250);
        QVERIFY(all.constFirst() < 350 && all.constLast() > 850);
        // Scrolled there in steps, it is the same as if the day had opened there.
        for (const auto x : { 420, 900, 300, 600 })
            f.timeline.setSight(x, 400);
        const auto scrolled = places();
        f.timeline.setSight(2000, 0);
        QCOMPARE(places(), QList<double>());
        f.timeline.setSight(600, 400);
        QCOMPARE(places(), scrolled);
        QVERIFY(std::ranges::is_sorted(scrolled));
    }

    void countsTheHoursAsTheUserDoes()
    {
        Fixture f;
        QLocale::setDefault(QLocale(QLocale::Ukrainian));
        QCOMPARE(f.timeline.hours().at(13), u"13"_s);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QVERIFY(f.timeline.hours().at(13).startsWith(u"1 "_s));
        QLocale::setDefault(QLocale::c());
    }
};

QTEST_GUILESS_MAIN(CalendarModelTest)
#include "CalendarModelTest.moc"
