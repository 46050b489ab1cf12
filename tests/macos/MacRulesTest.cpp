#include "macos/calendar/EventFacts.h"
#include "macos/display/ScreenFacts.h"
#include "macos/keys/KeyCodes.h"
#include "macos/media/MacAdapterCommand.h"
#include "macos/media/ScriptAnswer.h"
#include "macos/pasteboard/DroppedContent.h"
#include "macos/pasteboard/MacDropReader.h"
#include "macos/pasteboard/PasteboardAccess.h"
#include "macos/pasteboard/TypeNames.h"
#include "macos/screenshots/CaptureMark.h"
#include "macos/session/BundlePlace.h"
#include "macos/session/LogName.h"
#include "notch/NotchGeometry.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QImage>
#include <QMimeData>
#include <QtEndian>

namespace {

/// A property list of one object, with the table and the trailer that every such list ends with.
QByteArray listOf(char object)
{
    return QByteArray("bplist00") + object + '\x08'
        + QByteArray::fromHex("0000000000000101000000000000000100000000000000000000000000000009");
}

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

/// What the adapters for macOS know of their system, as far as it needs nothing of that system.
class MacRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Where the clocks go forward on the 29th of March.
    void initTestCase() { qputenv("TZ", "Europe/Kyiv"); }

    void theHousingIsWhereTheAreasEnd()
    {
        // A second screen lies to the left and has no housing.
        const ScreenFacts plain { u"Plain"_s, { -1920, 0, 1920, 1080 }, 0, {}, {} };
        const ScreenFacts built { u"Built-in"_s, { 0, 0, 1512, 982 }, 32, { 0, 950, 663.3, 32 },
            { 848.7, 950, 663.3, 32 } };
        const auto geometry = NotchGeometry::find({ plain.screen(), built.screen() });
        QVERIFY(geometry);
        QCOMPARE(geometry->screenFrame, built.frame);
        QCOMPARE(geometry->notchRect, (ScreenRect { 663, 950, 186, 32 }));
    }

    void aScreenWithoutHousing()
    {
        const ScreenFacts facts { u"Screen"_s, { 0, 0, 1512, 982 }, -1, { 0, 950, 600, 32 }, {} };
        QVERIFY(facts.screen().topLeftArea);
        QVERIFY(!facts.screen().topRightArea);
        QCOMPARE(facts.screen().topInset, 0.0);
    }

    void keysGoByTheirPlace()
    {
        // A has the place 0, a tab is no key of ours, and the last one is none at all.
        const QList<std::pair<quint16, Key>> rows { { 8, Key::C }, { 9, Key::V }, { 36, Key::Return },
            { 76, Key::KeypadEnter }, { 49, Key::Space }, { 51, Key::Backspace }, { 117, Key::ForwardDelete },
            { 53, Key::Escape }, { 123, Key::Left }, { 124, Key::Right }, { 125, Key::Down },
            { 126, Key::Up }, { 0, Key::Other }, { 48, Key::Other }, { 0xFFFF, Key::Other } };
        for (const auto& [place, key] : rows) {
            QCOMPARE(keycodes::keyAt(place), key);
            QCOMPARE(keycodes::placeOf(key), key == Key::Other ? std::nullopt : std::optional(place));
            QCOMPARE(keycodes::qtKeyOf(key) == Qt::Key_unknown, key == Key::Other);
        }
    }

    void modifiersOfAHotKey()
    {
        using enum KeyModifier;
        QCOMPARE(keycodes::hotKeyModifiers(Command | Shift), 768U);
        QCOMPARE(keycodes::hotKeyModifiers(Option), 0x800U);
        QCOMPARE(keycodes::hotKeyModifiers(Control), 0x1000U);
        QCOMPARE(keycodes::hotKeyModifiers({}), 0U);
    }

    void modifiersOfAnEvent()
    {
        using enum KeyModifier;
        // Left Command with its own bit, as the keyboard sends it.
        QCOMPARE(keycodes::modifiersOf(0x100108), KeyModifiers(Command));
        QCOMPARE(keycodes::modifiersOf(0x1E0000), Command | Shift | Option | Control);
        // An arrow key is a function key of the keypad, and Caps Lock is no modifier of anything.
        QCOMPARE(keycodes::modifiersOf(0xA10100), KeyModifiers());
        QCOMPARE(keycodes::qtModifiersOf(Command | Option), Qt::ControlModifier | Qt::AltModifier);
        QCOMPARE(keycodes::qtModifiersOf(Control | Shift), Qt::MetaModifier | Qt::ShiftModifier);
    }

    void theAdapterIsThereWhenAllOfItIs()
    {
        const TestFolder folder;
        const auto make = [&folder](const QString& name) {
            folder.write(name, {});
            return folder.filePath(name);
        };
        const auto script = make(u"adapter.pl"_s);
        const auto interpreter = make(u"interpreter"_s);
        const MacAdapterCommand command(folder.path(), interpreter);
        QVERIFY(!command.find());
        const auto library = make(u"libMediaRemoteAdapter.dylib"_s);
        QVERIFY2(!command.find(), "the interpreter cannot be run");
        QFile::setPermissions(interpreter, QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(command.find(), (ProgramCall { interpreter, { script, library } }));
        QFile::remove(script);
        QVERIFY(!command.find());
    }

    void scriptAnswersAreOfAKind()
    {
        using Kind = scriptanswer::Kind;
        const QList<std::pair<QByteArray, Kind>> rows { { "list", Kind::List }, { "utxt", Kind::Text },
            { "long", Kind::Integer }, { "doub", Kind::Real }, { "true", Kind::Truth },
            { "type", Kind::Nothing }, { "tdta", Kind::Bytes }, { "JPEG", Kind::Bytes } };
        for (const auto& [code, kind] : rows)
            QVERIFY2(
                scriptanswer::kindOf(qFromBigEndian<quint32>(code.constData())) == kind, code.constData());
    }

    void onlyOneScriptErrorIsARefusal()
    {
        QVERIFY(scriptanswer::error(-1743, u"Not authorized"_s).isRefusal);
        QCOMPARE(scriptanswer::error(-1743, {}).description, u"error -1743"_s);
        QVERIFY(!scriptanswer::error(-600, u"Application isn’t running."_s).isRefusal);
        const auto unknown = scriptanswer::error({}, {});
        QVERIFY(!unknown.isRefusal);
        QVERIFY(!unknown.description.isEmpty());
    }

    void eachTypeIsNamedOnce()
    {
        const QStringList offered { u"public.utf8-plain-text"_s, u"NSStringPboardType"_s,
            u"com.example.private"_s };
        QCOMPARE(typenames::identifiersOf(offered),
            (QStringList { pasteboardtype::string.toString(), u"com.example.private"_s }));
    }

    void thePresentNameOfATypeIsAskedFirst()
    {
        const auto old = u"Apple PNG pasteboard type"_s;
        QCOMPARE(typenames::nameOf(pasteboardtype::png, { old, u"public.png"_s }), u"public.png"_s);
        QCOMPARE(typenames::nameOf(pasteboardtype::png, { u"public.tiff"_s, old }), old);
        QVERIFY(typenames::nameOf(pasteboardtype::png, { u"public.tiff"_s }).isEmpty());
    }

    void onlyTwoAnswersAboutThePasteboardAreFinal()
    {
        using enum Pasteboard::Access;
        const std::array answers { Asked, Asked, Granted, Denied, Asked };
        for (std::size_t behavior = 0; behavior < answers.size(); ++behavior)
            QCOMPARE(pasteboardAccess(static_cast<int>(behavior)), answers.at(behavior));
    }

    void markedCopiesAreKnown()
    {
        const auto isMarked = [](const QString& name) {
            return typenames::isMarked({ u"public.utf8-plain-text"_s, name });
        };
        for (const auto& name : { u"org.nspasteboard.ConcealedType"_s, u"org.nspasteboard.TransientType"_s,
                 u"org.nspasteboard.AutoGeneratedType"_s, u"com.agilebits.onepassword"_s,
                 u"de.petermaurer.TransientPasteboardType"_s })
            QVERIFY2(isMarked(name), qPrintable(name));
        QVERIFY(!isMarked(u"public.utf8-plain-text"_s));
        // Only says who copied it.
        QVERIFY(!isMarked(u"org.nspasteboard.source"_s));
    }

    void aTruthValueMarksACapture()
    {
        QCOMPARE(capturemark::valueOf(listOf('\x09')), true);
        QCOMPARE(capturemark::valueOf(listOf('\x08')), false);
        QVERIFY(listOf('\x09').size() < capturemark::longest);
    }

    void anythingElseMarksNoCapture()
    {
        QVERIFY(!capturemark::valueOf({}));
        QVERIFY(!capturemark::valueOf("bplist00"));
        QVERIFY(!capturemark::valueOf(listOf('\x10')));
        QVERIFY(!capturemark::valueOf(listOf('\x09').chopped(1)));
        QVERIFY(!capturemark::valueOf(listOf('\x09').replace("bplist", "xplist")));
    }

    void onlyTheFolderOfProgramsIsSafe()
    {
        for (const auto& path : { u"/Applications/Nimbarrow.app"_s, u"/Applications/Tools/Nimbarrow.app"_s })
            QVERIFY2(!bundleplace::isOutsideApplications(path), qPrintable(path));
        for (const auto& path : { u"/Applications2/Nimbarrow.app"_s, u"/Users/a/Downloads/Nimbarrow.app"_s,
                 u"/Users/a/Applications/Nimbarrow.app"_s, u"/Applications/../tmp/Nimbarrow.app"_s })
            QVERIFY2(bundleplace::isOutsideApplications(path), qPrintable(path));
    }

    void resourcesLieBesideTheProgram()
    {
        QCOMPARE(bundleplace::resources(u"/Applications/Nimbarrow.app/Contents/MacOS"_s),
            u"/Applications/Nimbarrow.app/Contents/Resources"_s);
    }

    void ownLogCategoriesStandUnderTheProgram()
    {
        const QByteArray program = "ua.tessak.Nimbarrow";
        QCOMPARE(LogName::of("ua.tessak.Nimbarrow.calendar"), (LogName { program, "calendar" }));
        QCOMPARE(LogName::of("qt.qpa.window"), (LogName { program, "qt.qpa.window" }));
        QCOMPARE(LogName::of("ua.tessak.Nimbarrow."), (LogName { program, "ua.tessak.Nimbarrow." }));
        QCOMPARE(LogName::of("ua.tessak.Nimbarrower.x"), (LogName { program, "ua.tessak.Nimbarrower.x" }));
        QCOMPARE(LogName::of(nullptr), (LogName { program, "default" }));
    }

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

    void eventsAndAccessHaveTheSystemsNumbers()
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

    void filesAndLinksAreDropped()
    {
        QMimeData drag;
        const QList<QUrl> urls { QUrl::fromLocalFile(u"/Users/a/Знімок.png"_s),
            QUrl(u"https://example.org"_s) };
        drag.setUrls(urls);
        drag.setText(u"Знімок.png"_s);
        QCOMPARE(MacDropReader().types(drag),
            (QStringList { pasteboardtype::fileUrl.toString(), pasteboardtype::string.toString() }));
        int given = 0;
        MacDropReader().read(drag, [&](const PasteboardContent& content) {
            ++given;
            QCOMPARE(content.urls(), urls);
            QCOMPARE(content.fileUrls(), urls.first(1));
            QCOMPARE(content.string(), u"Знімок.png"_s);
        });
        QCOMPARE(given, 1);
    }

    void droppedPicturesAreReadAsPng()
    {
        QImage picture(3, 2, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QMimeData decoded;
        decoded.setImageData(picture);
        const DroppedContent content(decoded);
        QVERIFY(content.types().contains(pasteboardtype::png));
        QCOMPARE(QImage::fromData(content.data(pasteboardtype::png), "PNG").size(), picture.size());

        // Bytes that are there are not made again.
        QMimeData bytes;
        bytes.setData(u"image/png"_s, "as it was");
        QCOMPARE(DroppedContent(bytes).data(pasteboardtype::png), "as it was");
    }

    void aMarkedDropIsNotRead()
    {
        QMimeData drag;
        drag.setText(u"secret"_s);
        drag.setData(pasteboardtype::concealed.toString(), {});
        const DroppedContent content(drag);
        QVERIFY(content.types().contains(pasteboardtype::concealed));
        QVERIFY(!content.string());
        QVERIFY(content.data(pasteboardtype::string).isEmpty());
    }
};

QTEST_GUILESS_MAIN(MacRulesTest)
#include "MacRulesTest.moc"
