#include "calendar/DayEvent.h"

#include "calendar/LinkDetector.h"
#include "platform/Calendars.h"
#include "support/Test.h"

#include <QElapsedTimer>

#include <cmath>

namespace {

double luminance(const QColor& color)
{
    const auto light = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * light(color.redF()) + 0.7152 * light(color.greenF()) + 0.0722 * light(color.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const auto [dark, bright] = std::minmax({ luminance(one), luminance(other) });
    return (bright + 0.05) / (dark + 0.05);
}

/// What `color` makes of black behind it.
QColor onBlack(const QColor& color, double opacity)
{
    return QColor::fromRgbF(static_cast<float>(color.redF() * opacity),
        static_cast<float>(color.greenF() * opacity), static_cast<float>(color.blueF() * opacity));
}

} // namespace

class DayEventTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheMeeting_data()
    {
        const Rows<QString, QString, QString, QString> row;
        const auto none = QString();
        const auto zoom = u"https://zoom.us/j/1"_s;
        const auto notes = [&](const char* name, const QString& text, const QString& meeting) {
            row(name, none, none, text, meeting);
        };
        row("its own link wins", zoom, none, u"https://meet.google.com/abc"_s, zoom);
        row("a web page is no meeting", u"https://example.org"_s, none, zoom, zoom);
        row("the place before the notes", none, u"Room 1, https://meet.google.com/abc"_s, zoom,
            u"https://meet.google.com/abc"_s);
        row("nothing", none, u" \n "_s, none, none);
        notes("the first that qualifies",
            u"https://docs.example/zoom.us https://zoom.us/j/1 https://zoom.us/j/2"_s, zoom);
        notes("any capitals", u"HTTPS://US02WEB.ZOOM.US/j/1"_s, u"https://us02web.zoom.us/j/1"_s);
        notes(
            "a host that only looks like it", u"https://notzoom.us/j/1 https://zoom.us.example.org/"_s, none);
        notes("a mail address", u"mailto:me@zoom.us or me@zoom.us"_s, none);
        notes("angle brackets", u"Join <https://zoom.us/j/1> now"_s, zoom);
        notes("round brackets and a full stop", u"(see https://zoom.us/j/1)."_s, zoom);
        notes("brackets of its own", u"https://zoom.us/j/1(a)."_s, u"https://zoom.us/j/1(a)"_s);
        notes("quotes", u"«https://zoom.us/j/1», “https://zoom.us/j/2”"_s, zoom);
        notes("HTML", u"<a href=\"https://zoom.us/j/1?pwd=a&amp;b=c\">x</a>"_s,
            u"https://zoom.us/j/1?pwd=a&b=c"_s);
        notes("HTML as text", u"&lt;https://zoom.us/j/1&gt;"_s, zoom);
        notes("no scheme", u"Zoom: us02web.zoom.us/j/1, meet you there"_s, u"https://us02web.zoom.us/j/1"_s);
        notes("no scheme and another host", u"zoom.example/j/1"_s, none);
        notes("a word before the scheme", u"Link:https://zoom.us/j/1"_s, zoom);
        notes("glued to the scheme", u"hiddenhttps://zoom.us/j/1"_s, zoom);
        notes("a mail filter's redirect",
            u"https://nam02.safelinks.protection.outlook.com/?url=https%3A%2F%2Fteams.microsoft.com%2Fl%2F1&data=x"_s,
            u"https://teams.microsoft.com/l/1"_s);
        notes("a redirect to elsewhere",
            u"https://nam02.safelinks.protection.outlook.com/?url=https%3A%2F%2Fexample.org%2Fzoom.us"_s,
            none);
        for (const auto* scheme : { "javascript", "file" }) {
            row(scheme, none, none,
                u"https://x.safelinks.protection.outlook.com/?url=%1%3A%2F%2Fzoom.us%2Fj"_s.arg(
                    QLatin1StringView(scheme)),
                none);
        }
        for (const auto& behind : { u"\u200B"_s, u"\u200E"_s, u"\u2069"_s, u"\uFEFF"_s, u"\uFFFC"_s, u"…"_s,
                 u"。"_s, u"）"_s, u"&#x27;"_s, u"&#62;"_s })
            notes(
                qPrintable(u"ended by U+"_s + QString::number(behind.at(0).unicode(), 16) + behind.sliced(1)),
                zoom + behind + u"x"_s, zoom);
        notes("a secret that ends in a mark", u"https://zoom.us/j/1?pwd=ab_, x"_s,
            u"https://zoom.us/j/1?pwd=ab_"_s);
        notes("emphasis", u"_https://zoom.us/j/1_."_s, zoom);
        notes("a numbered ampersand", u"https://zoom.us/j/1?a=b&#38;c=d"_s, u"https://zoom.us/j/1?a=b&c=d"_s);
        notes("the end of the text", u"https://"_s, none);
    }
    void findsTheMeeting()
    {
        const auto [url, location, notes, meeting] = Rows<QString, QString, QString, QString>::current();
        const auto found = DayEvent::meetingUrlIn({ QUrl(url) }, { location, std::nullopt, notes });
        QCOMPARE(found.value_or(QUrl()).toString(), meeting);
    }

    void readsHostileNotesInOneGo()
    {
        for (const auto& piece : { u"https://"_s, u"((((["_s, u"zoom.us."_s, u"a.b-"_s, u"&amp;&quot"_s,
                 u"https://a"_s, u".,;:!?"_s, u"https://zoom.us.x/"_s }) {
            QElapsedTimer timer;
            timer.start();
            const auto notes = piece.repeated(qsizetype { 1 } << 20).first(qsizetype { 1 } << 20);
            QVERIFY(!DayEvent::meetingUrlIn({}, { notes }));
            // Not a measurement: a scan that goes back over what it has read takes hours.
            QVERIFY2(timer.elapsed() < 20'000, qPrintable(piece));
        }
    }

    void keepsWhatTheStoreTells()
    {
        CalendarEvent event;
        event.start = QDateTime(QDate(2026, 3, 1), QTime(9, 0));
        event.end = event.start.addSecs(60);
        event.location = u"  \n"_s;
        const auto one = DayEvent::make(event);
        QCOMPARE(one.title, QString());
        QVERIFY(!one.location);
        QVERIFY(!one.isRecurring);
        QVERIFY(one != DayEvent::make(event));
        event.url = QUrl(u"https://example.org"_s);
        event.notes = u"https://zoom.us/j/2"_s;
        event.conferences = { QUrl(u"https://conference.example/1"_s), QUrl(u"https://zoom.us/j/1"_s) };
        QCOMPARE(DayEvent::make(event).meetingUrl, QUrl(u"https://zoom.us/j/1"_s));
        event.identifier = u"a"_s;
        event.isDetached = true;
        // What it shows is a line, whoever wrote it; what it is searched for stays whole.
        event.title = u"Stand\u202eup\nnow"_s;
        event.calendar = u"Work\r\n"_s;
        event.location = u" Room\n1 "_s + QString(500, u'x') + u"\nhttps://zoom.us/j/3"_s;
        event.conferences.clear();
        event.notes.clear();
        const auto shown = DayEvent::make(event);
        QCOMPARE(shown.title, u"Stand up now"_s);
        QCOMPARE(shown.calendar, u"Work"_s);
        QCOMPARE(shown.location, u"Room 1 "_s + QString(293, u'x'));
        QCOMPARE(shown.meetingUrl, QUrl(u"https://zoom.us/j/3"_s));
        QVERIFY(DayEvent::make(event).isRecurring);
        QCOMPARE(DayEvent::make(event), DayEvent::make(event));
    }

    void linksToTheCalendar()
    {
        QCOMPARE(
            DayEvent::calendarUrl(u"eds:a/b c%?#"_s)->toEncoded(), "ical://ekevent/eds:a/b%20c%25%3F%23");
        QVERIFY(!DayEvent::calendarUrl(QString(QChar(0xD800))));
    }

    void canBeReadOnBlack()
    {
        const auto property
            = DayEvent::staticMetaObject.property(DayEvent::staticMetaObject.indexOfProperty("color"));
        for (const auto* name :
            { "#000000", "#000060", "#0000ff", "#ff0000", "#5e5c5c", "#30d158", "#ffff00", "#ffffff" }) {
            DayEvent event;
            event.color = QColor(QLatin1StringView(name));
            const auto visible = property.readOnGadget(&event).value<QColor>();
            QVERIFY2(contrast(visible, Qt::black) >= 4.4, name);
            // White titles, also on an event that the pointer is on.
            QVERIFY2(contrast(onBlack(Qt::white, 0.92), onBlack(visible, 0.36)) >= 4.5, name);
        }
    }
};

QTEST_GUILESS_MAIN(DayEventTest)
#include "DayEventTest.moc"
