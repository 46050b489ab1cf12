#include "linux/calendar/LinuxCalendarStore.h"

#include "linux/calendar/DayWatch.h"
#include "support/FakeDesktop.h"
#include "support/PrivateBus.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QDBusMessage>
#include <QElapsedTimer>
#include <QScopeGuard>

#include <atomic>
#include <future>

namespace {

/// Tells by the title of its one event which store it is.
class NamedStore final : public Calendars {
public:
    explicit NamedStore(QString name)
        : m_name(std::move(name))
    {
    }

    std::atomic<bool> answers = true;
    bool hasDefaultCalendar = true;

    /// Whoever asks waits while it is blocked.
    void setBlocked(bool blocked)
    {
        m_isBlocked = blocked;
        m_isBlocked.notify_all();
    }

    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override
    {
        m_isBlocked.wait(true);
        if (!answers)
            return {};
        CalendarEvent event;
        event.title = m_name;
        event.start = start;
        event.end = end;
        return QList { event };
    }

    void create(const QString& /*title*/, const QDateTime& /*start*/, const QDateTime& /*end*/,
        std::function<void(const Created&)> done) override
    {
        done(hasDefaultCalendar ? Created { {}, {}, m_name }
                                : Created { CreateError::NoDefaultCalendar, {}, {} });
    }

private:
    QString m_name;
    std::atomic<bool> m_isBlocked = false;
};

const QString service = u"org.gnome.evolution.dataserver.Sources5"_s;

} // namespace

class LinuxCalendarStoreTest : public QObject {
    Q_OBJECT

    TestFolder m_folder;
    FakeUserDefaults m_defaults;
    /// Null until they are used.
    NamedStore* m_server = nullptr;
    NamedStore* m_files = nullptr;
    std::unique_ptr<PrivateBus> m_bus;

    [[nodiscard]] std::unique_ptr<CalendarStore> store()
    {
        m_server = m_files = nullptr;
        const auto make = [](NamedStore*& place, const QString& name) {
            auto made = std::make_unique<NamedStore>(name);
            place = made.get();
            return made;
        };
        std::optional<QDBusConnection> bus;
        if (m_bus)
            bus = QDBusConnection::connectToBus(m_bus->address(), u"program"_s);
        return std::make_unique<LinuxCalendarStore>(m_defaults, bus,
            LinuxCalendarStore::Stores { [this, make] { return make(m_server, u"server"_s); },
                [this, make] { return make(m_files, u"folder"_s); }, m_folder.filePath(u"calendars"_s) },
            std::make_unique<DayWatch>(std::nullopt));
    }

    /// A bus that starts the server, which fails, and may keep it from everybody.
    void startBus(bool isInstalled, bool isRefused)
    {
        if (isInstalled)
            m_folder.write(
                u"x.service"_s, "[D-BUS Service]\nName=" + service.toUtf8() + "\nExec=/bin/false\n");
        m_bus = std::make_unique<PrivateBus>(configureBus(isRefused));
    }

    [[nodiscard]] QString configureBus(bool isRefused) const
    {
        return busConfiguration(
            m_folder, isRefused ? "<deny send_destination=\"" + service.toUtf8() + "\"/>" : QByteArray());
    }

    QDBusConnection runServer() const
    {
        auto server = QDBusConnection::connectToBus(m_bus->address(), u"server"_s);
        server.registerService(service);
        return server;
    }

    /// Both there, and both known.
    [[nodiscard]] std::unique_ptr<CalendarStore> storeOfBoth()
    {
        startBus(true, false);
        runServer();
        m_folder.write(u"calendars/a.ics"_s, "x");
        auto calendars = store();
        read(*calendars);
        return calendars;
    }

    /// As the program asks: on another thread.
    static QString read(CalendarStore& store)
    {
        static const auto now = QDateTime::currentDateTime();
        auto answer = std::async(std::launch::async, [&store] { return store.events(now, now.addSecs(1)); });
        while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
            QCoreApplication::processEvents();
        const auto events = answer.get();
        if (!events)
            return u"no answer"_s;
        QStringList titles;
        for (const auto& event : *events)
            titles += event.title;
        return titles.join(u'+');
    }

private Q_SLOTS:
    void init()
    {
        m_defaults.values.clear();
        m_defaults.set(u"calendarAccessRequested", true);
        QDir(m_folder.path()).removeRecursively();
        QVERIFY(QDir().mkpath(m_folder.path()));
    }

    void cleanup()
    {
        // Even to ask for a connection starts Qt's thread for them.
        if (!std::exchange(m_bus, nullptr))
            return;
        QDBusConnection::disconnectFromBus(u"server"_s);
        QDBusConnection::disconnectFromBus(u"program"_s);
    }

    void theSessionsCalendarsAreFound_data()
    {
        const auto row = [rows = Rows<QByteArray, QByteArray, QString, QString>()](const QByteArray& server,
                             const QByteArray& folder, const QString& expected, const QString& created) {
            rows("server " + server + ", folder " + folder, server, folder, expected, created);
        };
        row("missing", "missing", {}, u"folder"_s);
        row("missing", "empty", {}, u"folder"_s);
        row("missing", "there", u"folder"_s, u"folder"_s);
        row("missing", "unreadable", u"no answer"_s, u"folder"_s);
        row("there", "missing", u"server"_s, u"server"_s);
        row("there", "there", u"server+folder"_s, u"server"_s);
        row("there", "unreadable", u"server"_s, u"server"_s);
        row("broken", "missing", {}, u"folder"_s);
        row("broken", "there", u"folder"_s, u"folder"_s);
        row("refused", "missing", u"no answer"_s, u"folder"_s);
        row("refused", "there", u"folder"_s, u"folder"_s);
    }
    void theSessionsCalendarsAreFound()
    {
        const auto [server, folder, expected, created]
            = Rows<QByteArray, QByteArray, QString, QString>::current();
        startBus(server != "missing", server == "refused");
        if (server == "there" || server == "refused")
            runServer();
        if (folder == "unreadable")
            m_folder.write(u"calendars"_s, "It is a file.");
        else if (folder != "missing")
            QVERIFY(QDir(m_folder.path()).mkdir(u"calendars"_s));
        if (folder == "there")
            m_folder.write(u"calendars/Work/a.ics"_s, "x");

        m_defaults.values.clear();
        const auto calendars = store();
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::NotDetermined);
        std::optional<bool> granted;
        calendars->requestFullAccess([&granted](bool answer) { granted = answer; });
        QVERIFY(!granted);
        QTRY_VERIFY(granted);
        const bool isRefused = expected == u"no answer"_s;
        QCOMPARE(*granted, !isRefused);
        QCOMPARE(read(*calendars), expected);
        QCOMPARE(calendars->authorization(),
            isRefused ? CalendarStore::Authorization::Denied : CalendarStore::Authorization::FullAccess);
        // What has nothing to read is not loaded.
        QCOMPARE(m_server != nullptr, expected.contains(u"server"_s));
        QCOMPARE(m_files != nullptr, expected.contains(u"folder"_s));

        // At the next start it is remembered, and who reads or makes an event first finds out.
        QCOMPARE(read(*store()), expected);
        const auto again = store();
        QString made;
        again->create(
            {}, {}, {}, [&made](const CalendarStore::Created& answer) { made = answer.identifier; });
        QTRY_COMPARE(made, created);
    }

    void theFolderHasWhatFindsNoPlaceAtTheServer()
    {
        const auto calendars = storeOfBoth();
        m_server->hasDefaultCalendar = false;
        QString created;
        calendars->create(
            {}, {}, {}, [&created](const CalendarStore::Created& answer) { created = answer.identifier; });
        QTRY_COMPARE(created, u"folder"_s);
    }

    void whatChangesInEitherIsTold()
    {
        startBus(true, false);
        auto server = runServer();
        const auto calendars = store();
        QCOMPARE(read(*calendars), u"server"_s);
        QSignalSpy changed(calendars.get(), &CalendarStore::changed);
        QVERIFY(server.unregisterService(service));
        QVERIFY(server.registerService(service));
        QTRY_COMPARE(changed.size(), 1);
        Q_EMIT m_server->changed();
        QCOMPARE(changed.size(), 2);
        // What is written beside the folder is nobody's calendar, and an empty folder has none.
        m_folder.write(u"index.json"_s, "x");
        QVERIFY(QDir(m_folder.path()).mkdir(u"calendars"_s));
        m_folder.write(u"calendars/a.ics"_s, "x");
        QTRY_COMPARE(changed.size(), 3);
        QCOMPARE(read(*calendars), u"server+folder"_s);
        Q_EMIT m_files->changed();
        QCOMPARE(changed.size(), 4);
    }

    void neitherWaitsForTheOther_data()
    {
        const Rows<bool> row;
        row("the server is slow", true);
        row("the folder is slow", false);
    }
    void neitherWaitsForTheOther()
    {
        const auto [isServerSlow] = Rows<bool>::current();
        const auto calendars = storeOfBoth();
        auto* const slow = isServerSlow ? m_server : m_files;
        const auto release = qScopeGuard([slow] { slow->setBlocked(false); });
        slow->setBlocked(true);
        // One that is silent counts as it was.
        QCOMPARE(read(*calendars), u"server+folder"_s);
        slow->setBlocked(false);
        slow->answers = false;
        QCOMPARE(read(*calendars), u"server+folder"_s);
        slow->answers = true;

        // Of another day it has said nothing yet, and its answer is news.
        slow->setBlocked(true);
        const auto tomorrow = QDateTime::currentDateTime().addDays(1);
        const auto readTomorrow = [&] {
            auto answer = std::async(
                std::launch::async, [&] { return calendars->events(tomorrow, tomorrow.addSecs(1)); });
            while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
                QCoreApplication::processEvents();
            return answer.get().value_or(QList<CalendarEvent>()).size();
        };
        QCOMPARE(readTomorrow(), 1);
        const QSignalSpy changed(calendars.get(), &CalendarStore::changed);
        slow->setBlocked(false);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(readTomorrow(), 2);
        // What nobody has missed is no news.
        QCOMPARE(changed.size(), 1);
    }

    void aRefusalEndsWithItsCause()
    {
        startBus(true, true);
        const auto server = runServer();
        const auto calendars = store();
        QCOMPARE(read(*calendars), u"no answer"_s);
        const QSignalSpy changed(calendars.get(), &CalendarStore::changed);
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::Denied);
        (void)configureBus(false);
        server.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
            u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
        // As at every refresh.
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::Denied);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::FullAccess);
        QCOMPARE(read(*calendars), u"server"_s);
    }

    void aFolderThatIsLostIsNoAccessUntilItIsBack()
    {
        m_folder.write(u"calendars/a.ics"_s, "x");
        const auto calendars = store();
        QCOMPARE(read(*calendars), u"folder"_s);
        QVERIFY(QDir(m_folder.filePath(u"calendars"_s)).removeRecursively());
        m_folder.write(u"calendars"_s, "It is a file.");
        m_files->answers = false;
        QCOMPARE(read(*calendars), u"no answer"_s);
        QTRY_COMPARE(calendars->authorization(), CalendarStore::Authorization::Denied);
        QVERIFY(QFile::remove(m_folder.filePath(u"calendars"_s)));
        m_files->answers = true;
        QTRY_COMPARE(calendars->authorization(), CalendarStore::Authorization::FullAccess);
        QCOMPARE(read(*calendars), u"folder"_s);
    }

    void theEndOfTheProgramWaitsForNobody()
    {
        const auto calendars = store();
        QElapsedTimer time;
        time.start();
        const auto now = QDateTime::currentDateTime();
        auto answer = std::async(std::launch::async, [&] { return calendars->events(now, now); });
        // The main loop, on which the question would be asked, does not run any more.
        QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection);
        QVERIFY(!answer.get());
        QVERIFY(time.elapsed() < 5000);
    }
};

QTEST_GUILESS_MAIN(LinuxCalendarStoreTest)
#include "LinuxCalendarStoreTest.moc"
