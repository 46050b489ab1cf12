#include "linux/calendar/LinuxCalendarStore.h"

#include "linux/calendar/DayWatch.h"
#include "support/FakeUserDefaults.h"
#include "support/PrivateBus.h"
#include "support/TestFolder.h"

#include <QDBusMessage>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <future>
#include <utility>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

/// Tells by the title of its one event which store it is.
class NamedStore final : public CalendarStore {
public:
    explicit NamedStore(QString name)
        : m_name(std::move(name))
    {
    }

    [[nodiscard]] Authorization authorization() override { return Authorization::FullAccess; }
    void requestFullAccess(std::function<void(bool)> answered) override { answered(true); }

    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override
    {
        CalendarEvent event;
        event.title = m_name;
        event.start = start;
        event.end = end;
        return QList { event };
    }

    void create(const QString& /*title*/, const QDateTime& /*start*/, const QDateTime& /*end*/,
        std::function<void(const Created&)> done) override
    {
        done({ {}, {}, m_name });
    }

private:
    QString m_name;
};

const QString service = u"org.gnome.evolution.dataserver.Sources5"_s;

} // namespace

class LinuxCalendarStoreTest : public QObject {
    Q_OBJECT

    TestFolder m_folder;
    FakeUserDefaults m_defaults;
    NamedStore* m_made = nullptr;
    int m_madeCount = 0;
    bool m_isConnected = false;

    [[nodiscard]] std::unique_ptr<CalendarStore> store(std::optional<QDBusConnection> bus)
    {
        m_isConnected = m_isConnected || bus;
        const auto make = [this](const QString& name) {
            auto made = std::make_unique<NamedStore>(name);
            m_made = made.get();
            ++m_madeCount;
            return made;
        };
        return std::make_unique<LinuxCalendarStore>(m_defaults, std::move(bus),
            LinuxCalendarStore::Stores {
                [make] { return make(u"server"_s); }, [make] { return make(u"folder"_s); } },
            std::make_unique<DayWatch>(std::nullopt));
    }

    /// A bus that starts what stands in the folder, and may keep the server from everybody.
    void configureBus(bool refuses) const
    {
        m_folder.write(u"bus.conf"_s,
            "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><servicedir>"
                + m_folder.path().toUtf8()
                + "</servicedir><policy context=\"default\"><allow send_destination=\"*\"/>"
                  "<allow eavesdrop=\"false\"/><allow own=\"*\"/>"
                + (refuses ? "<deny send_destination=\"" + service.toUtf8() + "\"/>" : QByteArray())
                + "</policy></busconfig>");
    }

    static QString askedOnAnotherThread(CalendarStore& store)
    {
        const auto now = QDateTime::currentDateTime();
        auto answer
            = std::async(std::launch::async, [&store, now] { return store.events(now, now.addSecs(1)); });
        while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
            QCoreApplication::processEvents();
        const auto events = answer.get();
        return events ? events->first().title : u"no answer"_s;
    }

private Q_SLOTS:
    void init()
    {
        m_defaults.values.clear();
        m_madeCount = 0;
        for (const auto& name : QDir(m_folder.path()).entryList(QDir::Files))
            QFile::remove(m_folder.filePath(name));
    }

    void cleanup()
    {
        // Even to ask for a connection starts Qt's thread for them.
        if (!std::exchange(m_isConnected, false))
            return;
        QDBusConnection::disconnectFromBus(u"server"_s);
        QDBusConnection::disconnectFromBus(u"program"_s);
    }

    void theSessionsCalendarsAreFound_data()
    {
        QTest::addColumn<bool>("installed");
        QTest::addColumn<bool>("running");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<QString>("expected");
        QTest::newRow("not installed") << false << false << false << u"folder"_s;
        QTest::newRow("installed and answering") << true << true << false << u"server"_s;
        QTest::newRow("installed and broken") << true << false << false << u"folder"_s;
        QTest::newRow("refused by a policy") << true << true << true << u"no answer"_s;
    }

    void theSessionsCalendarsAreFound()
    {
        QFETCH(bool, installed);
        QFETCH(bool, running);
        QFETCH(bool, refused);
        QFETCH(QString, expected);
        if (installed)
            m_folder.write(
                u"x.service"_s, "[D-BUS Service]\nName=" + service.toUtf8() + "\nExec=/bin/false\n");
        configureBus(refused);
        const PrivateBus bus(m_folder.filePath(u"bus.conf"_s));
        auto server = QDBusConnection::connectToBus(bus.address(), u"server"_s);
        QVERIFY(server.isConnected());
        if (running)
            QVERIFY(server.registerService(service));

        const auto calendars = store(QDBusConnection::connectToBus(bus.address(), u"program"_s));
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::NotDetermined);
        // Nobody is disturbed before the user wants it.
        QCOMPARE(m_madeCount, 0);
        std::optional<bool> granted;
        calendars->requestFullAccess([&granted](bool answer) { granted = answer; });
        QVERIFY(!granted);
        QTRY_VERIFY(granted);
        QCOMPARE(*granted, !refused);
        QCOMPARE(calendars->authorization(),
            refused ? CalendarStore::Authorization::Denied : CalendarStore::Authorization::FullAccess);
        QCOMPARE(askedOnAnotherThread(*calendars), expected);

        // At the next start it is remembered, and who reads first finds out.
        const auto again = store(QDBusConnection::connectToBus(bus.address(), u"program"_s));
        QCOMPARE(again->authorization(), CalendarStore::Authorization::FullAccess);
        QCOMPARE(askedOnAnotherThread(*again), expected);
        QString created;
        again->create({}, {}, {}, [&created](const CalendarStore::Created& answer) {
            created = answer.error ? u"no answer"_s : answer.identifier;
        });
        QTRY_COMPARE(created, expected);
    }

    void aServerThatComesBackIsNews()
    {
        m_folder.write(u"x.service"_s, "[D-BUS Service]\nName=" + service.toUtf8() + "\nExec=/bin/false\n");
        configureBus(false);
        const PrivateBus bus(m_folder.filePath(u"bus.conf"_s));
        auto server = QDBusConnection::connectToBus(bus.address(), u"server"_s);
        QVERIFY(server.registerService(service));
        const auto calendars = store(QDBusConnection::connectToBus(bus.address(), u"program"_s));
        QCOMPARE(askedOnAnotherThread(*calendars), u"server"_s);
        const QSignalSpy changed(calendars.get(), &CalendarStore::changed);
        QVERIFY(server.unregisterService(service));
        QVERIFY(server.registerService(service));
        QTRY_COMPARE(changed.size(), 1);
        Q_EMIT m_made->changed();
        QCOMPARE(changed.size(), 2);
    }

    void aRefusalEndsWithItsCause()
    {
        m_folder.write(u"x.service"_s, "[D-BUS Service]\nName=" + service.toUtf8() + "\nExec=/bin/false\n");
        configureBus(true);
        const PrivateBus bus(m_folder.filePath(u"bus.conf"_s));
        auto server = QDBusConnection::connectToBus(bus.address(), u"server"_s);
        QVERIFY(server.registerService(service));
        m_defaults.set(u"calendarAccessRequested", true);
        const auto calendars = store(QDBusConnection::connectToBus(bus.address(), u"program"_s));
        QCOMPARE(askedOnAnotherThread(*calendars), u"no answer"_s);
        const QSignalSpy changed(calendars.get(), &CalendarStore::changed);
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::Denied);
        configureBus(false);
        server.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
            u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
        // As at every refresh.
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::Denied);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(calendars->authorization(), CalendarStore::Authorization::FullAccess);
        QCOMPARE(askedOnAnotherThread(*calendars), u"server"_s);
    }

    void withoutABusTheFolderIsRead() { QCOMPARE(askedOnAnotherThread(*store({})), u"folder"_s); }

    void theEndOfTheProgramWaitsForNobody()
    {
        const auto calendars = store({});
        QElapsedTimer time;
        time.start();
        const auto now = QDateTime::currentDateTime();
        auto answer = std::async(std::launch::async, [&] { return calendars->events(now, now); });
        // The main loop, on which the choice would be made, does not run any more.
        QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection);
        QVERIFY(!answer.get());
        QVERIFY(time.elapsed() < 5000);
    }
};

QTEST_GUILESS_MAIN(LinuxCalendarStoreTest)
#include "LinuxCalendarStoreTest.moc"
