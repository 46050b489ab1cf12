#include "linux/applications/DesktopOpener.h"

#include "linux/calendar/EventIdentifier.h"
#include "support/BusService.h"
#include "support/PrivateBus.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <sys/resource.h>
#include <sys/stat.h>

/// A file manager that remembers what it was to show.
class FileManager final : public BusService {
public:
    explicit FileManager(const PrivateBus& bus)
        : BusService(bus.address(), u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s)
    {
    }

    QStringList shown;
    bool fails = false;

    bool handleMessage(const QDBusMessage& question, const QDBusConnection& /*connection*/) override
    {
        if (fails || signatureOf(question) != "org.freedesktop.FileManager1.ShowItems ass"_L1)
            return m_bus.send(question.createErrorReply(QDBusError::Failed, u"no window"_s));
        shown += question.arguments().at(0).toStringList();
        return m_bus.send(question.createReply());
    }
};

class DesktopOpenerTest : public QObject {
    Q_OBJECT

    PrivateBus m_bus;
    std::unique_ptr<TestFolder> m_folder;
    InheritedState m_state;

    /// A program that writes down its name and what it was given.
    void install(const QString& program)
    {
        m_folder->write("bin/"_L1 + program,
            "#!/bin/sh\ncd \"${0%/*}/..\"\n{ echo \"${0##*/}\"; for a; do echo \"$a\"; done; } > part\n"
            "echo \"$(umask) $(ulimit -c) ${QT_QPA_PLATFORM-unset}\" > state\nmv part run\n",
            QFile::ExeOwner);
    }

    [[nodiscard]] QStringList contents(const QString& name) const
    {
        return QString::fromUtf8(readFile(m_folder->filePath(name))).split(u'\n', Qt::SkipEmptyParts);
    }

    [[nodiscard]] QStringList started() const { return contents(u"run"_s); }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<TestFolder>();
        QVERIFY(m_folder->isValid());
        m_state.umask = 022;
        m_state.coreSize = 1024;
        auto& environment = m_state.environment;
        environment.clear();
        environment.insert(u"PATH"_s, m_folder->filePath(u"bin"_s) + ":/usr/bin:/bin"_L1);
        environment.insert(u"HOME"_s, m_folder->path());
        environment.insert(u"XDG_DATA_HOME"_s, m_folder->filePath(u"data"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder->filePath(u"config"_s));
        // Without one the tool takes the user for sitting at a terminal. Nobody connects to it.
        environment.insert(u"DISPLAY"_s, u":320"_s);

        install(u"handler"_s);
        m_folder->write(u"data/applications/handler.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Handler\nExec="
                + m_folder->filePath(u"bin/handler"_s).toUtf8()
                + " %u\nMimeType=x-scheme-handler/https;text/calendar;text/plain;inode/directory;\n");
        m_folder->write(u"config/mimeapps.list"_s,
            "[Default Applications]\nx-scheme-handler/https=handler.desktop\n"
            "text/calendar=handler.desktop\ntext/plain=handler.desktop\ninode/directory=handler.desktop\n");
    }

    void cleanup() { QDBusConnection::disconnectFromBus(u"program"_s); }

    void linksGoToTheDefaultProgramOfTheSession_data()
    {
        const Rows<QString> row;
        row("a desktop", u"GNOME"_s);
        row("a bare window manager", {});
    }
    void linksGoToTheDefaultProgramOfTheSession()
    {
        const auto [desktop] = Rows<QString>::current();
        m_state.environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        qputenv("QT_QPA_PLATFORM", "xcb");
        const auto own = ::umask(077);
        rlimit core {};
        ::getrlimit(RLIMIT_CORE, &core);
        const rlimit none { 0, core.rlim_max };
        ::setrlimit(RLIMIT_CORE, &none);
        DesktopOpener opener(m_state, {});
        opener.open(QUrl(u"https://example.org/a%20b?c=d&e=%22f%22#g"_s));
        ::umask(own);
        ::setrlimit(RLIMIT_CORE, &core);
        const QStringList expected { u"handler"_s, u"https://example.org/a%20b?c=d&e=%22f%22#g"_s };
        QTRY_COMPARE(started(), expected);
        // Nothing of what this program has set for itself.
        QCOMPARE(contents(u"state"_s),
            QStringList { u"0022 %1 unset"_s.arg(std::min<rlim_t>(core.rlim_max, 1024) / 512) });
    }

    void theNextToolIsTriedWhenOneFails_data()
    {
        const Rows<QString, QStringList, QStringList> row;
        const auto link = u"https://example.org/"_s;
        row("bare window manager", {}, {}, { u"gio"_s, u"open"_s, link });
        row("bare, nothing known to the first", {}, { u"gio"_s }, { u"xdg-open"_s, link });
        row("desktop", u"KDE"_s, {}, { u"xdg-open"_s, link });
        row("desktop, its own tool fails", u"KDE"_s, { u"xdg-open"_s }, { u"gio"_s, u"open"_s, link });
        row("nothing opens it", {}, { u"gio"_s, u"xdg-open"_s }, {});
    }
    void theNextToolIsTriedWhenOneFails()
    {
        const auto [desktop, failing, expected] = Rows<QString, QStringList, QStringList>::current();
        m_state.environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        for (const auto& tool : { u"gio"_s, u"xdg-open"_s }) {
            if (failing.contains(tool))
                m_folder->write("bin/"_L1 + tool, "#!/bin/sh\nexit 3\n", QFile::ExeOwner);
            else
                install(tool);
        }
        DesktopOpener opener(m_state, {});
        const QSignalSpy failed(&opener, &Opener::failed);
        opener.open(QUrl(u"https://example.org/"_s));
        QTRY_VERIFY(!failed.isEmpty() || !started().isEmpty());
        QCOMPARE(started(), expected);
        QCOMPARE(failed.size(), expected.isEmpty() ? 1 : 0);
    }

    void whatWasOpenedOutlivesTheProgram()
    {
        m_folder->write(u"bin/gio"_s,
            "#!/bin/sh\ncd \"${0%/*}/..\"\ntouch began\nwhile [ ! -e over ]; do sleep 0.05; done\ntouch "
            "ended\n",
            QFile::ExeOwner);
        {
            DesktopOpener opener(m_state, {});
            opener.open(QUrl(u"https://example.org/"_s));
            QTRY_VERIFY(QFile::exists(m_folder->filePath(u"began"_s)));
        }
        m_folder->write(u"over"_s, "");
        QTRY_VERIFY(QFile::exists(m_folder->filePath(u"ended"_s)));
    }

    void theRightProgramIsStarted_data()
    {
        const Rows<QString, QStringList, QString, QStringList> row;
        const EventIdentifier meeting { EventIdentifier::Kind::DataServer, u"system-calendar"_s,
            u"40%/a@example.org"_s, u"20261121T090000"_s };
        const auto linkTo = [](const EventIdentifier& event) {
            return "ical://ekevent/"_L1
                + QString::fromLatin1(QUrl::toPercentEncoding(event.text(), "/:@!$&'()*+,;="));
        };
        const auto both = QStringList { u"gnome-calendar"_s, u"evolution"_s };
        row("GNOME Calendar", {}, both, linkTo(meeting),
            { u"gnome-calendar"_s, u"--uuid"_s, u"system-calendar:40%/a@example.org:20261121T090000"_s });
        row("Evolution", {}, { u"evolution"_s }, linkTo(meeting),
            { u"evolution"_s,
                u"calendar:///?source-uid=system-calendar&comp-uid="
                "40%25%2Fa%40example.org&comp-rid=20261121T090000"_s });
        row("no calendar program", {}, {}, linkTo(meeting), {});
        row("not an event of ours", {}, both, u"ical://ekevent/x:y:z"_s,
            { u"xdg-open"_s, u"ical://ekevent/x:y:z"_s });

        const auto privacy = u"x-apple.systempreferences:com.apple.preference.security?Privacy_"_s;
        const auto all = QStringList { u"gnome-control-center"_s, u"systemsettings"_s };
        row("calendars, GNOME", u"ubuntu:GNOME"_s, all, privacy + u"Calendars"_s,
            { u"gnome-control-center"_s, u"online-accounts"_s });
        row("others, GNOME", u"GNOME"_s, all, privacy + u"Accessibility"_s,
            { u"gnome-control-center"_s, u"privacy"_s });
        row("calendars, KDE", u"KDE"_s, all, privacy + u"Calendars"_s,
            { u"systemsettings"_s, u"kcm_kaccounts"_s });
        row("not installed", u"KDE"_s, { u"gnome-control-center"_s }, privacy + u"Calendars"_s, {});
        row("no link", {}, {}, u"--version"_s, {});
    }
    void theRightProgramIsStarted()
    {
        auto [desktop, installed, link, expected]
            = Rows<QString, QStringList, QString, QStringList>::current();
        m_state.environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        // Nothing but what the row installs.
        m_state.environment.insert(u"PATH"_s, m_folder->filePath(u"bin"_s));
        m_folder->write(u"bin/mv"_s, "#!/bin/sh\nexec /bin/mv \"$@\"\n", QFile::ExeOwner);
        for (const auto& name : installed)
            install(name);
        install(u"xdg-open"_s);

        DesktopOpener opener(m_state, {});
        if (link.startsWith("x-apple"_L1))
            QCOMPARE(opener.hasSettings(), !expected.isEmpty());
        opener.open(QUrl(link));
        // Where nothing is to start, what does start behind it ends the wait.
        if (expected.isEmpty()) {
            opener.open(QUrl(u"https://example.org/"_s));
            expected = QStringList { u"xdg-open"_s, u"https://example.org/"_s };
        }
        QTRY_COMPARE(started(), expected);
    }

    void anEventInAFileIsOpenedWithTheFile()
    {
        const auto path = m_folder->filePath(u"a b.ics"_s);
        m_folder->write(u"a b.ics"_s, "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n");
        DesktopOpener opener(m_state, {});
        const EventIdentifier event { EventIdentifier::Kind::File, path, u"x"_s, {} };
        opener.open(QUrl("ical://ekevent/"_L1 + QString::fromLatin1(QUrl::toPercentEncoding(event.text()))));
        QTRY_COMPARE(started().size(), 2);
        QVERIFY2(started()[1].endsWith("/a%20b.ics"_L1) || started()[1] == path, qPrintable(started()[1]));
    }

    void filesAreShownByTheFileManager_data()
    {
        const Rows<bool, bool> row;
        row("it shows them", true, true);
        row("it fails, the folder is opened", true, false);
        row("no bus, the folder is opened", false, false);
    }
    void filesAreShownByTheFileManager()
    {
        const auto [hasBus, shows] = Rows<bool, bool>::current();
        FileManager manager(m_bus);
        manager.fails = !shows;
        std::optional<QDBusConnection> bus;
        if (hasBus)
            bus = QDBusConnection::connectToBus(m_bus.address(), u"program"_s);
        m_folder->write(u"shots/one.txt"_s, "1");

        DesktopOpener opener(m_state, bus);
        const auto file = QUrl::fromLocalFile(m_folder->filePath(u"shots/one.txt"_s));
        const auto other = QUrl::fromLocalFile(m_folder->filePath(u"shots/two.txt"_s));
        opener.reveal({ file, QUrl(u"https://example.org"_s), other });
        if (shows) {
            QTRY_COMPARE(manager.shown, (QStringList { file.toString(), other.toString() }));
        } else {
            QTRY_COMPARE(started().size(), 2);
            QVERIFY(started()[1].endsWith("/shots"_L1));
        }
    }
};

QTEST_GUILESS_MAIN(DesktopOpenerTest)
#include "DesktopOpenerTest.moc"
