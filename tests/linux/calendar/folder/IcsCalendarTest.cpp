#include "linux/calendar/folder/IcsCalendar.h"

#include "linux/calendar/folder/IcsFolder.h"
#include "linux/calendar/folder/IcsRecurrence.h"
#include "support/FileCalls.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <cerrno>
#include <sys/stat.h>

namespace {

#ifdef __SANITIZE_ADDRESS__
// What is freed stays in quarantine there, and everything has a fence.
constexpr long mostMemory = 900; // MB
#else
constexpr long mostMemory = 200; // MB
#endif

/// What the texts, each a file, say of that day.
QList<CalendarEvent> eventsOf(const QList<QByteArray>& texts, QDate day = { 2026, 11, 21 })
{
    const IcsFile::Reading reading { day.startOfDay(), day.addDays(1).startOfDay(), {} };
    IcsCalendar calendar(reading.start, reading.end);
    IcsZones zones;
    for (const auto& text : texts)
        calendar.add(std::make_shared<IcsFile>(IcsFile::parse(text, u"/any.ics"_s, reading, zones)));
    return calendar.events();
}

QStringList startsOf(const QList<CalendarEvent>& events)
{
    QStringList starts;
    for (const auto& event : events)
        starts += event.start.toString(u"HH:mm"_s);
    starts.sort();
    return starts;
}

} // namespace

class IcsCalendarTest : public QObject {
    Q_OBJECT

    static QList<QByteArray> corpus()
    {
        QList<QByteArray> texts;
        const QDir folder(QStringLiteral(NIMBARROW_ICS));
        for (const auto& name : folder.entryList({ u"*.ics"_s }))
            texts += readFile(folder.filePath(name));
        return texts;
    }

    static QStringList startsOf(const QByteArray& lines, QDate day)
    {
        return ::startsOf(eventsOf({ "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:a\r\n" + lines
                                       + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n" },
            day));
    }

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "Europe/Berlin"); }

    /// Another implementation of the same rules is asked what they mean.
    void rulesMeanWhatTheyMeanElsewhere_data()
    {
        const auto row = [rows = Rows<QByteArray, QByteArray>()](const char* start, const char* rule) {
            rows(QByteArray(start) + ' ' + rule, start, rule);
        };
        row("20260105T090000", "FREQ=DAILY");
        row("20260105T090000", "FREQ=DAILY;INTERVAL=3;BYMONTH=1,4");
        row("20260105T090000", "FREQ=DAILY;BYDAY=MO,WE;BYHOUR=8,17;BYMINUTE=0,30;COUNT=31");
        row("20260106T090000", "FREQ=WEEKLY;BYDAY=TU,TH");
        row("20260111T090000", "FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=SU,MO");
        row("20260111T090000", "FREQ=WEEKLY;INTERVAL=2;WKST=MO;BYDAY=SU,MO");
        row("20260131T090000", "FREQ=MONTHLY");
        row("20260130", "FREQ=MONTHLY;BYMONTHDAY=-1,15");
        row("20260102T090000", "FREQ=MONTHLY;BYDAY=1FR");
        row("20260130T090000", "FREQ=MONTHLY;INTERVAL=2;BYDAY=-1FR,2MO");
        row("20260113T090000", "FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13");
        row("20260130T090000", "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1");
        row("20260105T090000", "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=3,-2;COUNT=17");
        row("20240229", "FREQ=YEARLY");
        row("20260329T020000", "FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU");
        row("20260105T090000", "FREQ=YEARLY;BYMONTH=1,6;BYMONTHDAY=5,20");
        row("20260410T090000", "FREQ=YEARLY;INTERVAL=3;BYYEARDAY=1,100,-1");
        row("20260519T090000", "FREQ=YEARLY;BYDAY=20TU");
        row("20260511T090000", "FREQ=YEARLY;BYWEEKNO=20;BYDAY=MO");
        row("20261105T090000", "FREQ=YEARLY;INTERVAL=4;BYMONTH=11;BYDAY=TU;BYMONTHDAY=2,3,4,5,6,7,8");
        row("20260105T091500", "FREQ=HOURLY;INTERVAL=5;COUNT=40");
        row("20260105T091500", "FREQ=MINUTELY;INTERVAL=90");
        row("20260105T091507", "FREQ=SECONDLY;INTERVAL=7;COUNT=40");
    }
    void rulesMeanWhatTheyMeanElsewhere()
    {
        const auto [start, rule] = Rows<QByteArray, QByteArray>::current();
        constexpr int most = 60;
        const auto first = icaltime_from_string(start.constData());
        const auto parsed = icalrecurrencetype_from_string(rule.constData());
        QStringList expected;
        auto* const iterator = icalrecur_iterator_new(parsed, first);
        for (auto next = icalrecur_iterator_next(iterator);
             !icaltime_is_null_time(next) && expected.size() < most; next = icalrecur_iterator_next(iterator))
            expected += IcsTime::of(next)->text();
        icalrecur_iterator_free(iterator);
        QVERIFY(expected.size() > 5);

        const auto begin = *IcsTime::of(first);
        const auto collect = [&](WallTime from) {
            QStringList found;
            qint64 budget = 10'000'000;
            IcsRecurrence(parsed, begin)
                .visit(from, midnightOf(QDate(2300, 1, 1)), budget, [&](WallTime wall) {
                    auto time = begin;
                    time.wall = wall;
                    if (found.size() < most)
                        found += time.text();
                });
            return found;
        };
        QCOMPARE(collect(begin.wall), expected);
        // From the middle of the series it is the same series.
        auto middle = expected.at(expected.size() / 2);
        const auto rest = collect(IcsTime::of(icaltime_from_string(middle.toLatin1()))->wall);
        QCOMPARE(rest.first(expected.size() - expected.size() / 2), expected.sliced(expected.size() / 2));
    }

    void zonesAreFoundByAnyOfTheirNames_data()
    {
        const Rows<QByteArray, QString> row;
        row("an old name", "Europe/Kiev", u"08:00"_s);
        row("another name", "US/Eastern", u"15:00"_s);
        row("behind a slash", "/Europe/Helsinki", u"08:00"_s);
        row("Windows, by an old name", "India Standard Time", u"04:30"_s);
        row("Windows, of nowhere", "Mid-Atlantic Standard Time", u"09:00"_s);
        row("a rule: the user's", "ABC3", u"09:00"_s);
        row("in a path", "/example.org/20200101/America/New_York", u"15:00"_s);
        row("three parts", "/x/America/Argentina/Buenos_Aires", u"13:00"_s);
        row("unknown: the user's", "Nowhere", u"09:00"_s);
        row("a file: the user's", "../../../dev/zero", u"09:00"_s);
    }
    void zonesAreFoundByAnyOfTheirNames()
    {
        const auto [zone, start] = Rows<QByteArray, QString>::current();
        QCOMPARE(startsOf("DTSTART;TZID=\"" + zone + "\":20261121T090000", QDate(2026, 11, 21)),
            QStringList { start });
    }

    void eachFileHasItsOwnZones()
    {
        // The event stands before its zone, where summer has begun a month before.
        const auto file = [](const QByteArray& uid, const QByteArray& summer, const QByteArray& winter) {
            return "BEGIN:VEVENT\r\nUID:" + uid
                + "\r\nDTSTART;TZID=Office:20261121T090000\r\nEND:VEVENT\r\n"
                  "BEGIN:VTIMEZONE\r\nTZID:Office\r\nBEGIN:DAYLIGHT\r\nDTSTART:"
                  "19701025T020000\r\nTZOFFSETFROM:"
                + winter + "\r\nTZOFFSETTO:" + summer
                + "\r\nRRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:DAYLIGHT\r\n"
                  "BEGIN:STANDARD\r\nDTSTART:19710328T030000\r\nTZOFFSETFROM:"
                + summer + "\r\nTZOFFSETTO:" + winter
                + "\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
        };
        const auto texts
            = { file("a", "+0300", "+0200"), file("b", "-0500", "-0600"), file("c", "+0300", "+0200") };
        QCOMPARE(::startsOf(eventsOf(texts)), (QStringList { u"07:00"_s, u"07:00"_s, u"15:00"_s }));
    }

    void seriesAreReadAsOtherCalendarsReadThem_data()
    {
        const Rows<QByteArray, QDate, QStringList> row;
        const QDate day(2026, 11, 21);
        const QByteArray counted = "DTSTART:20261119T090000\r\nRRULE:FREQ=DAILY;";
        row("the last day comes first", counted + "COUNT=9;UNTIL=20261121T090000", day, { u"09:00"_s });
        row("after that day", counted + "COUNT=9;UNTIL=20261121T090000", day.addDays(1), {});
        row("the number is reached first", counted + "UNTIL=20261130T090000;COUNT=2", day, {});
        // A time that the clocks leave out still happens.
        const QByteArray daily = "DTSTART;TZID=Europe/Berlin:20260301T023000\r\nRRULE:FREQ=DAILY";
        row("before the gap", daily, QDate(2026, 3, 28), { u"02:30"_s });
        row("in the gap", daily, QDate(2026, 3, 29), { u"03:30"_s });
        row("an hour twice", daily, QDate(2026, 10, 25), { u"02:30"_s });
        const QByteArray moved
            = "DTSTART:20261107T090000\r\nRRULE:FREQ=WEEKLY\r\n"
              "EXDATE:20261212T090000\r\nEND:VEVENT\r\n"
              "BEGIN:VEVENT\r\nUID:a\r\nRECURRENCE-ID;RANGE=THISANDFUTURE:20261121T090000\r\n"
              "DTSTART:20261124T140000\r\nEND:VEVENT\r\n"
              "BEGIN:VEVENT\r\nUID:a\r\nRECURRENCE-ID:20261205T090000\r\n"
              "DTSTART:20261205T200000";
        const auto later = [&](const char* name, int days, const QStringList& starts) {
            row(name, moved, day.addDays(days), starts);
        };
        later("before it moved for good", -7, { u"09:00"_s });
        later("not there any more", 0, {});
        later("where it moved to", 3, { u"14:00"_s });
        later("and stays", 10, { u"14:00"_s });
        later("but for one", 14, { u"20:00"_s });
        later("which is not where the others are", 17, {});
        later("and one that is left out", 24, {});
        later("for good", 31, { u"14:00"_s });
    }
    void seriesAreReadAsOtherCalendarsReadThem()
    {
        const auto [lines, day, starts] = Rows<QByteArray, QDate, QStringList>::current();
        QCOMPARE(startsOf(lines, day), starts);
    }

    void coloursAreReadAsCalendarsWriteThem()
    {
        QCOMPARE(IcsFile::parseColor("#FF2968"), QColor(0xFF, 0x29, 0x68));
        QCOMPARE(IcsFile::parseColor(" #FF2968AA\n"), QColor(0xFF, 0x29, 0x68));
        QCOMPARE(IcsFile::parseColor("tomato"), QColor(0xFF, 0x63, 0x47));
        QCOMPARE(IcsFile::parseColor("blurple"), std::nullopt);
        QCOMPARE(IcsFile::parseColor(""), std::nullopt);
    }

    void hostileCalendarsCostLittle()
    {
        const auto texts = corpus();
        QVERIFY(texts.size() >= 6);
        // What is right in them is there.
        QCOMPARE(eventsOf({ readFile(QStringLiteral(NIMBARROW_ICS "/meeting.ics")) }).size(), 1);
        QCOMPARE(eventsOf({ readFile(QStringLiteral(NIMBARROW_ICS "/nested.ics")) }).size(), 2);
        const auto before = peakMemory();
        for (const auto& text : texts) {
            eventsOf({ text });
            // Hundreds of times the same, each an event of its own.
            auto many = text;
            for (int i = 0; i < 8; ++i)
                many += QByteArray(many).replace("UID:", "UID:" + QByteArray::number(i));
            eventsOf({ many });
        }
        eventsOf({ QByteArray("BEGIN:VEVENT\r\n").repeated(500'000) });
        eventsOf({ QByteArray("BEGIN:VALARM\r\n").repeated(500'000).prepend("BEGIN:VEVENT\r\n") });
        eventsOf({ "BEGIN:VEVENT\r\nDTSTART:20261121T090000Z\r\nSUMMARY:" + QByteArray(8'000'000, 'x') });
        eventsOf({ "BEGIN:VEVENT\r\nDTSTART:20261121T090000Z" + QByteArray("\r\n ;").repeated(2'000'000) });
        // Without the bounds a single one of these takes hours, and all of the memory.
        QVERIFY2(peakMemory() - before < mostMemory, qPrintable(QString::number(peakMemory() - before)));
    }

    void aFolderIsReadAsFarAsItCanBe()
    {
        const TestFolder folder;
        const QByteArray good = "BEGIN:VEVENT\r\nUID:a\r\nDTSTART:20261121T090000Z\r\nEND:VEVENT\r\n";
        folder.write(u"good.ics"_s, good);
        folder.write(u"notes.txt"_s, good);
        folder.write(u"huge.ics"_s, good);
        QVERIFY(QFile::resize(folder.filePath(u"huge.ics"_s), 50 * 1024 * 1024));
        QVERIFY(QFile::link(folder.path(), folder.filePath(u"circle"_s)));
        QVERIFY(QFile::link(u"/dev/zero"_s, folder.filePath(u"zero.ics"_s)));
        QCOMPARE(::mkfifo(qPrintable(folder.filePath(u"pipe.ics"_s)), 0600), 0);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"too large"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"too large"_s));
        IcsFolder calendars(folder.path());
        const auto events
            = calendars.events(QDate(2026, 11, 21).startOfDay(), QDate(2026, 11, 22).startOfDay());
        // Once by itself, and once more by the way round.
        QVERIFY(events);
        QCOMPARE(events->size(), 2);
        QVERIFY(!IcsFolder(folder.filePath(u"good.ics"_s)).events({}, {}));
    }

    void aFolderIsReadOnlyWhereItHasChanged()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"Work"_s));
        const auto now = QDateTime::currentDateTime();
        const auto longAgo = now.addSecs(-3600);
        const auto path = [&folder](int file) { return folder.filePath(u"Work/%1.ics"_s.arg(file)); };
        const auto write = [&](int file, const QByteArray& title, const QDateTime& time) {
            QFile ics(path(file));
            const auto text = "BEGIN:VEVENT\nDTSTART:20261121T090000Z\nSUMMARY:" + title + "\nEND:VEVENT\n";
            QVERIFY(ics.open(QIODevice::WriteOnly) && ics.write(text) > 0 && ics.flush());
            QVERIFY(ics.setFileTime(time, QFile::FileModificationTime));
        };
        IcsFolder calendars(folder.path());
        // What was read is told from what was kept by the edition in the title.
        const auto titles = [&](const QDateTime& start) {
            const auto events = calendars.events(start, start.addDays(1));
            QStringList found;
            for (const auto& event : *events)
                found += event.title;
            found.sort();
            return found.join(u' ');
        };
        const auto day = QDate(2026, 11, 21).startOfDay();
        for (int file = 0; file < 4; ++file)
            write(file, "a" + QByteArray::number(file), longAgo);
        write(4, "a4", now);
        QCOMPARE(titles(day), u"a0 a1 a2 a3 a4"_s);
        QVERIFY(QFile::remove(path(0)));
        write(1, "b1", longAgo);
        write(2, "b2", longAgo.addSecs(1));
        write(3, "longer", longAgo);
        // Its time was too new to tell it from the next edition.
        write(4, "b4", now);
        QCOMPARE(titles(day), u"a1 b2 b4 longer"_s);
        // Another day is another reading.
        QCOMPARE(titles(day.addSecs(-60)), u"b1 b2 b4 longer"_s);
    }

    void aNewEventThatFindsNoRoomLeavesNothingBehind()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"Personal"_s));
        const auto begin = QDate(2026, 11, 21).startOfDay();
        IcsFolder calendars(folder.path());
        {
            const FileCalls full(
                folder.path(), [](const char* name) { return name == "write"_ba ? ENOSPC : 0; });
            QVERIFY(calendars.create(u"New"_s, begin, begin.addSecs(3600)).error);
        }
        QVERIFY(QDir(folder.filePath(u"Personal"_s)).isEmpty());
        QVERIFY(!calendars.create(u"New"_s, begin, begin.addSecs(3600)).error);
        QCOMPARE(calendars.events(begin, begin.addDays(1))->size(), 1);
    }
};

QTEST_GUILESS_MAIN(IcsCalendarTest)
#include "IcsCalendarTest.moc"
