#include "calendar/TimelineLayout.h"

#include "support/Test.h"

#include <QTimeZone>

namespace {

/// In hours from midnight; `title` also names it.
struct Event {
    QString title;
    double from = 0;
    double to = 0;
    bool isAllDay = false;
};

/// "title x width row", with a + for an overflow.
using Places = QStringList;

} // namespace

class TimelineLayoutTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void placesTheDay_data()
    {
        const Rows<QList<Event>, Places, int> row;
        row("nothing", {}, {}, 1);
        row("all day", { { u"a"_s, 0, 24, true } }, {}, 1);
        row("one", { { u"a"_s, 9, 10.5 } }, { u"a 486 81 0"_s }, 1);
        row("no length", { { u"a"_s, 12, 12 } }, { u"a 648 6 0"_s }, 1);
        row("one after the other", { { u"a"_s, 9, 10 }, { u"b"_s, 10, 11 } },
            { u"a 486 54 0"_s, u"b 540 54 0"_s }, 1);
        row("three at once, by title", { { u"C"_s, 9, 10 }, { u"A"_s, 9, 10 }, { u"B"_s, 9, 10 } },
            { u"A 486 54 0"_s, u"B 486 54 1"_s, u"C 486 54 1+"_s }, 2);
        row("an overflow keeps its row busy",
            { { u"a"_s, 9, 10 }, { u"b"_s, 9, 10 }, { u"c"_s, 9, 12 }, { u"d"_s, 10, 11 },
                { u"e"_s, 10.5, 11 } },
            { u"a 486 54 0"_s, u"b 486 54 1"_s, u"c 486 162 1+"_s, u"d 540 54 0"_s, u"e 567 27 1+"_s }, 2);
        row("from the day before", { { u"a"_s, -2, 1 } }, { u"a 0 54 0"_s }, 1);
        row("into the next day", { { u"a"_s, 23, 26 } }, { u"a 1242 54 0"_s }, 1);
        row("other days", { { u"a"_s, -1, 0 }, { u"b"_s, 24, 25 }, { u"c"_s, 0, 0 } }, {}, 1);
    }
    void placesTheDay()
    {
        const auto [events, places, rows] = Rows<QList<Event>, Places, int>::current();
        const QDateTime dayStart(QDate(2026, 3, 1), QTime(0, 0), QTimeZone::utc());
        const auto at = [&dayStart](double hours) { return dayStart.addSecs(qRound64(hours * 3600)); };
        QList<DayEvent> day;
        for (const auto& event : events) {
            DayEvent dayEvent;
            dayEvent.title = event.title;
            dayEvent.start = at(event.from);
            dayEvent.end = at(event.to);
            dayEvent.isAllDay = event.isAllDay;
            day << dayEvent;
        }
        const auto layout = timelinelayout::place(day, dayStart);
        Places found;
        for (const auto& placement : layout.placements)
            found << u"%1 %2 %3 %4%5"_s.arg(placement.event.title)
                         .arg(placement.x)
                         .arg(placement.width)
                         .arg(placement.row)
                         .arg(placement.overflow ? u"+"_s : QString());
        QCOMPARE(found, places);
        QCOMPARE(layout.rowsUsed, rows);
    }

    void leavesOutWhatNobodyCanSee()
    {
        const QDateTime dayStart(QDate(2026, 3, 1), QTime(0, 0), QTimeZone::utc());
        QList<DayEvent> day;
        const auto add = [&](const QString& title, int from, int to) {
            DayEvent event;
            event.title = title;
            event.start = dayStart.addSecs(from * 60);
            event.end = dayStart.addSecs(to * 60);
            day << event;
        };
        for (const auto* const name : { "a", "b", "c", "d" })
            add(QLatin1StringView(name), 540, 600);
        // It shows behind the last one.
        add(u"cc"_s, 540, 660);
        QStringList seen;
        for (const auto& placement :
            timelinelayout::uncovered(timelinelayout::place(day, dayStart).placements))
            seen << placement.event.title;
        QCOMPARE(seen, (QStringList { u"a"_s, u"b"_s, u"cc"_s, u"d"_s }));

        // However many there are, there are only so many points.
        for (auto number = 0; number < 20'000; ++number)
            add(u"x"_s, number % 1440, number % 1440 + 1 + number % 90);
        const auto crowd = timelinelayout::uncovered(timelinelayout::place(day, dayStart).placements);
        QVERIFY2(crowd.size() < 1500, qPrintable(QString::number(crowd.size())));
    }
};

QTEST_GUILESS_MAIN(TimelineLayoutTest)
#include "TimelineLayoutTest.moc"
