#include "linux/calendar/folder/IcsFolderCalendarStore.h"
#include "linux/calendar/server/EdsCalendarStore.h"
#include "support/DataServer.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QElapsedTimer>
#include <QScopeGuard>
#include <QTimer>

#include <csignal>
#include <ctime>
#include <future>

namespace {

const QString firstCalendar = u"system-calendar"_s;

using Events = std::optional<QList<CalendarEvent>>;

/// Asks on another thread while the main loop runs, as the program does.
Events read(Calendars& store, QDate day)
{
    auto answer = std::async(std::launch::async,
        [&store, day] { return store.events(day.startOfDay(), day.addDays(1).startOfDay()); });
    while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        QCoreApplication::processEvents();
    return answer.get();
}

/// "Title 21T09:00-21T10:30", with the letters of what is special; sorted.
QStringList described(const Events& events)
{
    if (!events)
        return { u"no answer"_s };
    QStringList lines;
    for (const auto& event : *events) {
        auto line
            = event.title + event.start.toString(u" dd'T'HH:mm-"_s) + event.end.toString(u"dd'T'HH:mm"_s);
        if (event.isAllDay)
            line += " all-day"_L1;
        if (event.hasRecurrenceRules)
            line += " recurs"_L1;
        if (event.isDetached)
            line += " detached"_L1;
        if (event.status == CalendarEvent::Status::Cancelled)
            line += " cancelled"_L1;
        for (const auto& attendee : event.attendees) {
            if (attendee.isCurrentUser && attendee.participation == CalendarEvent::Participation::Declined)
                line += " declined"_L1;
            else if (attendee.isCurrentUser)
                line += " invited"_L1;
        }
        lines += line;
    }
    lines.sort();
    return lines;
}

void tell(const QList<qint64>& processes, int signal)
{
    for (const auto process : processes)
        ::kill(pid_t(process), signal);
}

} // namespace

/// One contract for every calendar store; what is said about days holds wherever the calendars lie.
class CalendarStoreTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<DataServer> m_server;
    std::unique_ptr<Calendars> m_store;

    [[nodiscard]] static bool isServer()
    {
        QFETCH_GLOBAL(bool, server);
        return server;
    }

    [[nodiscard]] QString calendars() const { return m_folder.filePath(u"calendars"_s); }

    /// As another program: at the server, or in the folder.
    bool put(const QByteArray& components, bool second = false)
    {
        const auto text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + components + "END:VCALENDAR\r\n";
        if (isServer())
            return DataServer::ask({ u"put"_s, second ? u"second"_s : firstCalendar }, text).has_value();
        const auto path = calendars() + (second ? u"/2"_s : u"/1"_s);
        writeFile(path + "/color"_L1, second ? "#ff0000\n" : "#00ff00\n");
        writeFile(path + "/displayname"_L1, second ? "Second\n" : "First\n");
        writeFile(path + "/a.ics"_L1, text);
        return true;
    }

    static QByteArray event(const QByteArray& lines)
    {
        return "BEGIN:VEVENT\r\nUID:a@x\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:A\r\n" + lines
            + "\r\nEND:VEVENT\r\n";
    }

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("server");
        QTest::newRow("data server") << true;
        QTest::newRow("folder") << false;
    }

    void initTestCase() { m_server = std::make_unique<DataServer>(m_folder.filePath(u"eds"_s)); }

    void init()
    {
        if (isServer()) {
            QVERIFY(DataServer::ask({ u"clear"_s, firstCalendar, u"second"_s }));
            // Longer than the program is patient: the machine may be busy.
            m_store = std::make_unique<EdsCalendarStore>(EdsCalendarStore::Patience { 20s, 60s });
        } else {
            QDir(calendars()).removeRecursively();
            writeFile(calendars() + "/addresses"_L1, "Sam@Example.org\n");
            m_store = std::make_unique<IcsFolderCalendarStore>(calendars());
        }
    }

    void cleanup() { m_store.reset(); }

    /// All rows lie in one calendar, told apart by the numbers before their titles.
    void aDayHasWhatOverlapsIt()
    {
        struct Row {
            const char* name;
            QByteArray components;
            QDate day;
            QStringList expected;
        };
        QList<Row> rows;
        const auto row = [&rows](const char* name, const QByteArray& components, QDate day,
                             const QStringList& expected) {
            rows += { name, components, day, expected };
        };
        const QDate day(2026, 11, 21);
        row("another zone",
            event("DTSTART;TZID=America/New_York:20261121T090000\r\nDTEND;TZID=America/"
                  "New_York:20261121T100000"),
            day, { u"A 21T15:00-21T16:00"_s });
        row("duration", event("DTSTART:20261121T090000Z\r\nDURATION:PT1H30M"), day,
            { u"A 21T10:00-21T11:30"_s });
        row("over midnight", event("DTSTART:20261120T220000Z\r\nDTEND:20261121T010000Z"), day,
            { u"A 20T23:00-21T02:00"_s });
        row("until midnight", event("DTSTART:20261120T220000Z\r\nDTEND:20261120T230000Z"), day, {});
        row("from midnight", event("DTSTART:20261121T230000Z\r\nDTEND:20261122T000000Z"), day, {});
        row("no length", event("DTSTART:20261121T090000Z"), day, { u"A 21T10:00-21T10:00"_s });
        row("all day", event("DTSTART;VALUE=DATE:20261121\r\nDTEND;VALUE=DATE:20261122"), day,
            { u"A 21T00:00-22T00:00 all-day"_s });
        row("all day, no end", event("DTSTART;VALUE=DATE:20261121"), day,
            { u"A 21T00:00-22T00:00 all-day"_s });
        row("all day, the day before", event("DTSTART;VALUE=DATE:20261120\r\nDTEND;VALUE=DATE:20261121"), day,
            {});
        row("all day, the day after", event("DTSTART;VALUE=DATE:20261122"), day, {});
        row("all day of 23 hours", event("DTSTART;VALUE=DATE:20260329"), QDate(2026, 3, 29),
            { u"A 29T00:00-30T00:00 all-day"_s });
        row("the hour that comes twice", event("DTSTART:20261025T013000Z\r\nDTEND:20261025T020000Z"),
            QDate(2026, 10, 25), { u"A 25T02:30-25T03:00"_s });

        const QByteArray daily = event("DTSTART;TZID=Europe/Berlin:20260301T090000\r\n"
                                       "DTEND;TZID=Europe/Berlin:20260301T100000\r\nRRULE:FREQ=DAILY");
        row("daily, when the clocks change", daily, QDate(2026, 3, 29), { u"A 29T09:00-29T10:00 recurs"_s });
        row("daily in another zone, whose clocks change later",
            event("DTSTART;TZID=America/New_York:20260101T090000\r\nDURATION:PT1H\r\nRRULE:FREQ=DAILY"),
            QDate(2026, 10, 26), { u"A 26T14:00-26T15:00 recurs"_s });
        row("left out",
            event("DTSTART:20261101T090000Z\r\nDURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n"
                  "EXDATE:20261120T090000Z,20261121T090000Z"),
            day, {});
        row("added", event("DTSTART:20261101T090000Z\r\nDURATION:PT1H\r\nRDATE:20261121T120000Z"), day,
            { u"A 21T13:00-21T14:00 recurs"_s });

        const QByteArray weekly = event("DTSTART;TZID=Europe/Berlin:20261107T090000\r\n"
                                        "DTEND;TZID=Europe/Berlin:20261107T100000\r\nRRULE:FREQ=WEEKLY")
            + "BEGIN:VEVENT\r\nUID:a@x\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:Moved\r\n"
              "RECURRENCE-ID;TZID=Europe/Berlin:20261121T090000\r\n"
              "DTSTART;TZID=Europe/Berlin:20261122T140000\r\nDTEND;TZID=Europe/Berlin:20261122T150000\r\n"
              "END:VEVENT\r\n";
        row("weekly, moved away", weekly, day, {});
        row("weekly, moved there", weekly, day.addDays(1), { u"Moved 22T14:00-22T15:00 detached"_s });
        row("added with its own length",
            event("DTSTART:20261101T090000Z\r\nDURATION:PT1H\r\n"
                  "RDATE;VALUE=PERIOD:20261121T120000Z/PT2H,20261121T150000Z/20261121T153000Z"),
            day, { u"A 21T13:00-21T15:00 recurs"_s, u"A 21T16:00-21T16:30 recurs"_s });
        row("cancelled", event("DTSTART:20261121T090000Z\r\nDURATION:PT1H\r\nSTATUS:CANCELLED"), day,
            { u"A 21T10:00-21T11:00 cancelled"_s });
        const QByteArray others = "\r\nATTENDEE;PARTSTAT=ACCEPTED:mailto:ada@example.org\r\n";
        row("declined",
            event("DTSTART:20261121T090000Z\r\nDURATION:PT1H" + others
                + "ATTENDEE;PARTSTAT=DECLINED:MAILTO:sam@example.org"),
            day, { u"A 21T10:00-21T11:00 declined"_s });
        row("invited",
            event("DTSTART:20261121T090000Z\r\nDURATION:PT1H" + others
                + "ATTENDEE;PARTSTAT=NEEDS-ACTION:mailto:sam@example.org"),
            day, { u"A 21T10:00-21T11:00 invited"_s });

        QByteArray components;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            const auto number = QByteArray::number(i);
            components += QByteArray(rows[i].components)
                              .replace("UID:", "UID:" + number)
                              .replace("SUMMARY:", "SUMMARY:" + number + ' ');
        }
        // The server has the calendar open by then, and does not read it anew.
        QVERIFY(read(*m_store, day));
        QVERIFY(put(components));
        for (qsizetype i = 0; i < rows.size(); ++i) {
            const auto events = read(*m_store, rows[i].day);
            QStringList found;
            for (const auto& line : described(events)) {
                if (line.startsWith(QString::number(i) + u' '))
                    found += line.section(u' ', 1);
            }
            QVERIFY2(found == rows[i].expected, rows[i].name + (": " + found.join(u"; "_s).toUtf8()));
            // Occurrences of one series, too, are told apart.
            QSet<QString> identifiers;
            for (const auto& event : *events)
                identifiers += event.identifier;
            QCOMPARE(identifiers.size(), events->size());
        }
    }

    void everyHourOfTheDayIsTheDays_data()
    {
        const Rows<QByteArray> row;
        for (const auto* const zone :
            { "Europe/Kyiv", "Pacific/Auckland", "America/Los_Angeles", "Asia/Kolkata" })
            row(zone, zone);
    }
    void everyHourOfTheDayIsTheDays()
    {
        const auto [zone] = Rows<QByteArray>::current();
        const auto home = qgetenv("TZ");
        const auto liveIn = [](const QByteArray& place) {
            qputenv("TZ", place);
            ::tzset();
        };
        liveIn(zone);
        const auto backHome = qScopeGuard([&] { liveIn(home); });
        const QDate day(2026, 11, 21);
        QByteArray components;
        QStringList expected;
        // The hours before and after the day are not its.
        for (int hour = -6; hour < 30; ++hour) {
            const auto start = day.startOfDay().addSecs(hour * 3600 + 900);
            const auto wall = start.toString(u"yyyyMMdd'T'HHmmss"_s).toLatin1();
            const auto utc = start.toUTC().toString(u"yyyyMMdd'T'HHmmss'Z'"_s).toLatin1();
            const auto before = start.addDays(-28).toString(u"yyyyMMdd'T'HHmmss"_s).toLatin1();
            const std::pair<QByteArray, QByteArray> kinds[] { { "floating", "DTSTART:" + wall },
                { "recurring", "DTSTART;TZID=" + zone + ':' + before + "\r\nRRULE:FREQ=WEEKLY" },
                { "utc", "DTSTART:" + utc }, { "zoned", "DTSTART;TZID=" + zone + ':' + wall } };
            for (const auto& [kind, lines] : kinds) {
                const auto name = kind + QByteArray::number(hour);
                components += "BEGIN:VEVENT\r\nUID:" + name + "\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:"
                    + kind + "\r\n" + lines + "\r\nDURATION:PT30M\r\nEND:VEVENT\r\n";
                if (start.date() == day)
                    expected += QString::fromLatin1(kind) + start.toString(u" dd'T'HH:mm-"_s)
                        + start.addSecs(1800).toString(u"dd'T'HH:mm"_s)
                        + (kind == "recurring" ? u" recurs"_s : QString());
            }
        }
        expected.sort();
        QCOMPARE(expected.size(), 4 * 24);
        QVERIFY(put(components));
        QCOMPARE(described(read(*m_store, day)), expected);
    }

    void whatAnotherProgramPutsInIsTold()
    {
        const QDate day(2026, 11, 21);
        QCOMPARE(described(read(*m_store, day)), QStringList());
        const QSignalSpy changed(m_store.get(), &Calendars::changed);
        QVERIFY(put(event("DTSTART:20261121T090000Z\r\nDURATION:PT1H")));
        QTRY_VERIFY(!changed.isEmpty());
        QTRY_COMPARE(described(read(*m_store, day)), QStringList { u"A 21T10:00-21T11:00"_s });
        const auto before = changed.size();
        QVERIFY(put(event("SEQUENCE:1\r\nDTSTART:20261121T100000Z\r\nDURATION:PT1H")));
        QTRY_VERIFY(changed.size() > before);
        QTRY_COMPARE(described(read(*m_store, day)), QStringList { u"A 21T11:00-21T12:00"_s });
    }

    void allCalendarsAreReadAndHaveTheirColours()
    {
        QVERIFY(put(event("DTSTART:20261121T090000Z\r\nDURATION:PT1H\r\nLOCATION:Here\\, there\r\n"
                          "URL:https://example.org/x\r\nDESCRIPTION:One\\nTwo\r\n"
                          "CONFERENCE;VALUE=URI;FEATURE=PHONE:tel:+123\r\n"
                          "CONFERENCE;VALUE=URI;FEATURE=AUDIO,VIDEO:https://zoom.us/j/1?a=b&c=d\r\n"
                          "X-GOOGLE-CONFERENCE:https://meet.google.com/abc\r\n"
                          "X-MICROSOFT-SKYPETEAMSMEETINGURL:https://teams.microsoft.com/l/1")));
        QVERIFY(put(event("DTSTART:20261121T090000Z\r\nDURATION:PT1H\r\nSTATUS:TENTATIVE"), true));
        const auto events = read(*m_store, QDate(2026, 11, 21));
        QCOMPARE(described(events), QStringList(2, u"A 21T10:00-21T11:00"_s));
        const bool firstIsRed = events->at(0).color == QColor(Qt::red);
        const auto& red = events->at(firstIsRed ? 0 : 1);
        const auto& other = events->at(firstIsRed ? 1 : 0);
        QCOMPARE(red.color, QColor(Qt::red));
        QCOMPARE(red.calendar, u"Second"_s);
        QCOMPARE(red.status, CalendarEvent::Status::Tentative);
        QVERIFY(other.color && *other.color != QColor(Qt::red));
        QCOMPARE(other.location, u"Here, there"_s);
        QCOMPARE(other.notes, u"One\nTwo"_s);
        QCOMPARE(other.url, QUrl(u"https://example.org/x"_s));
        // What calendars write for a meeting, without the number to call.
        QCOMPARE(other.conferences,
            (QList<QUrl> { QUrl(u"https://zoom.us/j/1?a=b&c=d"_s), QUrl(u"https://meet.google.com/abc"_s),
                QUrl(u"https://teams.microsoft.com/l/1"_s) }));
        QVERIFY(!red.identifier.isEmpty() && red.identifier != other.identifier);
    }

    void aNewEventIsInTheStoreForEveryProgram()
    {
        const QDateTime start(QDate(2026, 11, 21), QTime(14, 30));
        Calendars::Created created;
        bool done = false;
        m_store->create(u"Нова, подія"_s, start, start.addSecs(3600), [&](const Calendars::Created& answer) {
            created = answer;
            done = true;
        });
        QVERIFY(!done);
        QTRY_VERIFY(done);
        QVERIFY2(!created.error, qPrintable(created.errorDescription));
        const auto events = read(*m_store, start.date());
        QCOMPARE(described(events), QStringList { u"Нова, подія 21T14:30-21T15:30"_s });
        QCOMPARE(events->first().identifier, created.identifier);
        if (isServer()) {
            QCOMPARE(DataServer::ask({ u"list"_s, firstCalendar }),
                std::optional(u"20261121T143000 20261121T153000 Нова, подія\n"_s));
        } else {
            const auto folder = calendars() + "/Personal"_L1;
            const auto files = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden);
            QCOMPARE(files.size(), 1);
            const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::ExeGroup | QFile::ExeOther;
            QVERIFY(!(files.first().permissions() & others));
            QVERIFY(!(QFileInfo(folder).permissions() & others));
        }
    }

    void aServerThatHangsDoesNotAnswer()
    {
        if (!isServer())
            return;
        using namespace std::chrono_literals;
        QVERIFY(put(event("DTSTART:20261121T090000Z\r\nDURATION:PT1H")));
        auto store = std::make_unique<EdsCalendarStore>(EdsCalendarStore::Patience { 300ms, 1000ms });
        const QDate day(2026, 11, 21);
        QCOMPARE(described(read(*store, day)).size(), 1);
        const auto processes = m_server->processes();
        QVERIFY(processes.size() >= 2);
        tell(processes, SIGSTOP);
        QElapsedTimer time;
        time.start();
        QCOMPARE(described(read(*store, day)), QStringList { u"no answer"_s });
        bool failed = false;
        // On another day: the server may do it yet when it goes on.
        store->create(u"New"_s, day.addYears(1).startOfDay(), day.addYears(1).startOfDay().addSecs(60),
            [&](const Calendars::Created& answer) {
                failed = answer.error == Calendars::CreateError::Failed;
            });
        QTRY_VERIFY(failed);
        // One that was never connected.
        {
            EdsCalendarStore fresh({ 300ms, 1000ms });
            QCOMPARE(described(read(fresh, day)), QStringList { u"no answer"_s });
        }
        // One that goes while somebody waits.
        store = std::make_unique<EdsCalendarStore>(EdsCalendarStore::Patience { 60s, 60s });
        auto waiting = std::async(std::launch::async,
            [&store, day] { return store->events(day.startOfDay(), day.addDays(1).startOfDay()); });
        QTest::qWait(100);
        store->close();
        QCOMPARE(described(waiting.get()), QStringList { u"no answer"_s });
        store.reset();
        // Far more than it takes, and far less than without bounds.
        const auto took = time.elapsed();
        tell(processes, SIGCONT);
        QVERIFY2(took < 20'000, qPrintable(QString::number(took)));
        QTRY_COMPARE(described(read(*m_store, day)).size(), 1);
    }

    void whatIsCutShortIsNoFreeDay()
    {
        if (!isServer())
            return;
        const auto text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
            + event("DTSTART:20261121T090000Z\r\nDURATION:PT1H") + "END:VCALENDAR\r\n";
        // Of the calendar that is asked first.
        QVERIFY(DataServer::ask({ u"put"_s, u"another"_s }, text));
        const auto removal = qScopeGuard([] { (void)DataServer::ask({ u"clear"_s, u"another"_s }); });
        EdsCalendarStore store({ 1s, 1min });
        const QDate day(2026, 11, 21);
        const QStringList expected { u"A 21T10:00-21T11:00"_s };
        QTRY_COMPARE(described(read(store, day)), expected);
        const auto processes = m_server->processes();
        tell(processes, SIGSTOP);
        // It goes on once the first call has been ended.
        QTimer::singleShot(1500, &store, [&] { tell(processes, SIGCONT); });
        const auto now = described(read(store, day));
        tell(processes, SIGCONT);
        QVERIFY2(now == expected || now == QStringList { u"no answer"_s }, qPrintable(now.join(u';')));
    }

    void aServerThatHasDiedIsStartedAgain()
    {
        if (!isServer())
            return;
        QVERIFY(put(event("DTSTART:20261121T090000Z\r\nDURATION:PT1H")));
        const QDate day(2026, 11, 21);
        const QStringList expected { u"A 21T10:00-21T11:00"_s };
        QCOMPARE(described(read(*m_store, day)), expected);
        const QSignalSpy changed(m_store.get(), &Calendars::changed);
        tell(m_server->processes(), SIGKILL);
        QTRY_VERIFY(!changed.isEmpty());
        // Meanwhile it may not answer. What it never says is that there is nothing.
        QStringList now;
        const auto isBack = [&] {
            now = described(read(*m_store, day));
            return now != QStringList { u"no answer"_s };
        };
        QTRY_VERIFY(isBack());
        QCOMPARE(now, expected);
    }

    /// The last one, for there is no server behind it.
    void aBusThatGoesTakesNobodyWithIt()
    {
        if (!isServer())
            return;
        const QDate day(2026, 11, 21);
        QCOMPARE(described(read(*m_store, day)), QStringList());
        m_server->endBus();
        QTRY_COMPARE(described(read(*m_store, day)), QStringList { u"no answer"_s });
    }
};

int main(int count, char** values)
{
    qputenv("TZ", "Europe/Berlin");
    const QCoreApplication app(count, values);
    CalendarStoreTest test;
    return QTest::qExec(&test, count, values);
}
#include "CalendarStoreTest.moc"
