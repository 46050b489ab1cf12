#include "macos/calendar/EventFacts.h"

#include "support/Test.h"

#include <QTimeZone>

namespace {

QDateTime local(const QString& text)
{
    return QDateTime::fromString(text, Qt::ISODate);
}

EventFacts between(const QString& start, const QString& end)
{
    EventFacts facts;
    facts.start = local(start);
    facts.end = local(end);
    return facts;
}

} // namespace

class EventFactsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Where the clocks go forward on the 29th of March.
    void initTestCase() { qputenv("TZ", "Europe/Kyiv"); }

    void allDayEventsEndAtMidnight()
    {
        const QList<std::pair<QString, QString>> rows {
            { u"2026-03-01T23:59:59"_s, u"2026-03-02T00:00:00"_s },
            { u"2026-03-02T00:00:00"_s, u"2026-03-02T00:00:00"_s },
            { u"2026-03-02T00:00:01"_s, u"2026-03-03T00:00:00"_s },
            // A day of 23 hours.
            { u"2026-03-29T23:59:59"_s, u"2026-03-30T00:00:00"_s },
        };
        for (const auto& [end, midnight] : rows) {
            auto facts = between(u"2026-03-01T00:00:00"_s, end);
            QCOMPARE(facts.event()->end, local(end));
            facts.isAllDay = true;
            QCOMPARE(facts.event()->end, local(midnight));
            QCOMPARE(facts.event()->start, local(u"2026-03-01T00:00:00"_s));
        }
    }

    void anEventHasABeginningAndAnEnd()
    {
        auto facts = between(u"2026-03-01T10:00:00"_s, u"2026-03-01T11:00:00"_s);
        QVERIFY(facts.event());
        facts.end = {};
        QVERIFY(!facts.event());
        facts.end = facts.start;
        facts.start = {};
        QVERIFY(!facts.event());
    }

    void numbersOfTheSystem()
    {
        using enum CalendarEvent::Status;
        using Participation = CalendarEvent::Participation;
        auto facts = between(u"2026-03-01T10:00:00"_s, u"2026-03-01T11:00:00"_s);
        const std::array states { None, Confirmed, Tentative, Cancelled, None };
        for (facts.status = 0; facts.status < 5; ++facts.status)
            QCOMPARE(facts.event()->status, states.at(static_cast<std::size_t>(facts.status)));

        for (int status = 0; status < 9; ++status)
            facts.participants << EventFacts::Participant { status == 3, status };
        const auto attendees = facts.event()->attendees;
        const std::array parts { Participation::Unknown, Participation::Pending, Participation::Accepted,
            Participation::Declined, Participation::Tentative, Participation::Unknown,
            Participation::Accepted, Participation::Accepted, Participation::Unknown };
        for (std::size_t status = 0; status < parts.size(); ++status) {
            const auto& attendee = attendees.at(static_cast<qsizetype>(status));
            QCOMPARE(attendee.participation, parts.at(status));
            QCOMPARE(attendee.isCurrentUser, status == 3);
        }

        using enum CalendarStore::Authorization;
        const std::array access { NotDetermined, Restricted, Denied, FullAccess, WriteOnly, Denied };
        for (std::size_t status = 0; status < access.size(); ++status)
            QCOMPARE(calendarAuthorization(static_cast<int>(status)), access.at(status));
        QCOMPARE(calendarAuthorization(-1), Denied);
    }

    void coloursOfWideScreensAreBroughtHome()
    {
        auto facts = between(u"2026-03-01T10:00:00"_s, u"2026-03-01T11:00:00"_s);
        QVERIFY(!facts.event()->color);
        facts.color = EventFacts::Color { 1.09, -0.22, 0.5 };
        QCOMPARE(facts.event()->color->rgb(), qRgb(255, 0, 128));
    }
};

QTEST_GUILESS_MAIN(EventFactsTest)
#include "EventFactsTest.moc"
