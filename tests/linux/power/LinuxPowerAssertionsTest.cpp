#include "linux/power/LinuxPowerAssertions.h"

#include "keepawake/KeepAwake.h"
#include "linux/display/X11Properties.h"
#include "linux/power/X11ScreenSaver.h"
#include "linux/session/SessionBus.h"
#include "support/BusService.h"
#include "support/ManualTime.h"
#include "support/PrivateBus.h"
#include "support/PrivateXServer.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

#include <xcb/screensaver.h>

namespace {

const QString ours = u"sleep:idle Nimbarrow Nimbarrow keep awake block"_s;

/// The part of a desktop that darkens the screen, and keeps what was asked of it, in order.
class FakeScreenSaver final : public BusService {
public:
    explicit FakeScreenSaver(const PrivateBus& bus)
        : BusService(bus.address(), u"org.freedesktop.ScreenSaver"_s, u"/org/freedesktop/ScreenSaver"_s)
    {
    }

    QStringList log;
    bool answers = true;
    bool refuses = false;

    /// Grants what it has not answered so far.
    void answerLate() { m_bus.send(m_unanswered.createReply(1U)); }

    bool handleMessage(const QDBusMessage& question, const QDBusConnection& /*connection*/) override
    {
        const auto signature = signatureOf(question);
        const bool isEnd = signature == "org.freedesktop.ScreenSaver.UnInhibit u"_L1;
        if (!isEnd && signature != "org.freedesktop.ScreenSaver.Inhibit ss"_L1)
            return false;
        QStringList words { question.member() };
        for (const auto& argument : question.arguments())
            words << argument.toString();
        log << words.join(u' ');
        m_unanswered = question;
        if (isEnd)
            return !question.isReplyRequired() || m_bus.send(question.createReply());
        if (refuses)
            return m_bus.send(question.createErrorReply(QDBusError::AccessDenied, u"no"_s));
        return !answers || m_bus.send(question.createReply(7U));
    }

private:
    QDBusMessage m_unanswered;
};

/// The portal's way to the same: each request lasts until it is closed.
class FakeInhibitPortal final : public BusService {
public:
    explicit FakeInhibitPortal(const PrivateBus& bus)
        : BusService(bus.address(), u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s)
    {
    }

    QStringList held;
    /// Flags and reason of each request that was ever made.
    QStringList log;

    bool handleMessage(const QDBusMessage& question, const QDBusConnection& /*connection*/) override
    {
        const auto signature = signatureOf(question);
        if (signature == "org.freedesktop.portal.Request.Close "_L1)
            return held.removeOne(question.path());
        if (signature != "org.freedesktop.portal.Inhibit.Inhibit sua{sv}"_L1)
            return false;
        const auto options = qdbus_cast<QVariantMap>(question.arguments().at(2));
        log << question.arguments().at(1).toString() + u' ' + options.value(u"reason"_s).toString();
        held << u"/org/freedesktop/portal/desktop/request/t%1"_s.arg(log.size());
        return m_bus.send(question.createReply(QVariant::fromValue(QDBusObjectPath(held.last()))));
    }
};

/// A login manager's double from the distribution, in a process of its own.
class LoginManager {
public:
    explicit LoginManager(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, u"loginwatcher"_s))
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, address);
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.setStandardOutputFile(QProcess::nullDevice());
        // The distribution's interpreter: another one that comes first in the path lacks its packages.
        m_process.start(
            u"/usr/bin/python3"_s, { u"-m"_s, u"dbusmock"_s, u"--system"_s, u"--template"_s, u"logind"_s });
        // It answers when its template is loaded.
        if (!QTest::qWaitFor([this] { return !list().contains(u"down"_s); }, 20'000))
            qFatal("The login manager's double does not start.");
    }

    ~LoginManager()
    {
        m_process.kill();
        m_process.waitForFinished();
        QDBusConnection::disconnectFromBus(m_bus.name());
    }
    Q_DISABLE_COPY_MOVE(LoginManager)

    [[nodiscard]] QStringList list() const
    {
        auto call = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
            u"org.freedesktop.login1.Manager"_s, u"ListInhibitors"_s);
        const auto answer = m_bus.call(call);
        if (answer.type() != QDBusMessage::ReplyMessage)
            return { u"down"_s };
        QStringList list;
        const auto entries = answer.arguments().constFirst().value<QDBusArgument>();
        entries.beginArray();
        while (!entries.atEnd()) {
            QStringList words;
            entries.beginStructure();
            while (!entries.atEnd())
                words << entries.asVariant().toString();
            entries.endStructure();
            // What, who, why and how; by which process is nothing to this test.
            list << words.first(4).join(u' ');
        }
        entries.endArray();
        return list;
    }

private:
    QProcess m_process;
    QDBusConnection m_bus;
};

} // namespace

class LinuxPowerAssertionsTest : public QObject {
    Q_OBJECT

    PrivateBus m_session;
    PrivateBus m_system;
    std::unique_ptr<LoginManager> m_login;
    std::unique_ptr<FakeScreenSaver> m_saver;

    /// What the windowing system does, while it is done.
    class Substituted final : public Port {
    public:
        explicit Substituted(int& count)
            : m_count(count)
        {
            ++m_count;
        }
        ~Substituted() override { --m_count; }
        Q_DISABLE_COPY_MOVE(Substituted)

    private:
        int& m_count;
    };
    int m_substituted = 0;

    struct Program {
        Program(const std::optional<QDBusConnection>& session, const std::optional<QDBusConnection>& system,
            LinuxPowerAssertions::Substitute substitute = {})
            : power(session, system, std::move(substitute), time)
        {
        }

        ManualTime time;
        LinuxPowerAssertions power;
        KeepAwake keepAwake { power, time, time };
    };
    std::unique_ptr<Program> m_program;

    [[nodiscard]] static std::optional<QDBusConnection> connection(const PrivateBus& bus, const QString& name)
    {
        return QDBusConnection::connectToBus(bus.address(), name);
    }

    void startProgram()
    {
        m_program = std::make_unique<Program>(
            connection(m_session, u"session"_s), connection(m_system, u"system"_s));
    }

    /// Time for what must not come.
    static void settle() { QTest::qWait(60); }

    static const QString& asked()
    {
        static const auto text = u"Inhibit Nimbarrow Nimbarrow keep awake"_s;
        return text;
    }

private Q_SLOTS:
    void initTestCase() { m_login = std::make_unique<LoginManager>(m_system.address()); }

    void init()
    {
        m_saver = std::make_unique<FakeScreenSaver>(m_session);
        startProgram();
    }

    void cleanup()
    {
        m_program.reset();
        m_saver.reset();
        QDBusConnection::disconnectFromBus(u"session"_s);
        QDBusConnection::disconnectFromBus(u"system"_s);
        QTRY_COMPARE(m_login->list(), QStringList());
    }

    void aNewChoiceTakesOverWhatIsHeld()
    {
        // Before the services have answered, and long after.
        for (const int hours : { 1, 3, 2 }) {
            m_program->keepAwake.choose(hours);
            if (hours == 1)
                continue;
            QTRY_COMPARE(m_saver->log, QStringList { asked() });
            QTRY_COMPARE(m_login->list(), QStringList { ours });
            settle();
            // Neither given back nor asked for twice: there was no moment without, and none with two.
            QCOMPARE(m_saver->log, QStringList { asked() });
        }
        m_program->keepAwake.deactivate();
        QTRY_COMPARE(m_login->list(), QStringList());
        QTRY_COMPARE(m_saver->log, (QStringList { asked(), u"UnInhibit 7"_s }));
    }

    void isGivenBackWhenTheAnswerComesTooLate()
    {
        m_program->keepAwake.choose(0);
        m_program->keepAwake.deactivate();
        QTRY_COMPARE(m_saver->log, (QStringList { asked(), u"UnInhibit 7"_s }));
        QTRY_COMPARE(m_login->list(), QStringList());
    }

    void asksAgainAfterARestartAndNowhereElse()
    {
        const FakeInhibitPortal portal(m_session);
        m_program->keepAwake.choose(0);
        QTRY_COMPARE(m_saver->log, QStringList { asked() });
        QTRY_COMPARE(m_login->list(), QStringList { ours });
        m_saver.reset();
        m_login.reset();
        m_saver = std::make_unique<FakeScreenSaver>(m_session);
        m_login = std::make_unique<LoginManager>(m_system.address());
        QTRY_COMPARE(m_saver->log, QStringList { asked() });
        QTRY_COMPARE(m_login->list(), QStringList { ours });
        QVERIFY(portal.log.isEmpty());

        // Off while it is away: the next one is not asked, nor told about a number that was another's.
        m_saver.reset();
        settle();
        m_program->keepAwake.deactivate();
        settle();
        m_saver = std::make_unique<FakeScreenSaver>(m_session);
        settle();
        QCOMPARE(m_saver->log, QStringList());
    }

    void aServiceThatTheBusStartsIsAskedOnce()
    {
        const TestFolder folder;
        const auto log = folder.filePath(u"log"_s);
        // It writes down how often it is held.
        const auto saver = QFINDTESTDATA("../../desktop/peers/screen_saver.py");
        folder.write(u"saver.service"_s,
            u"[D-BUS Service]\nName=org.freedesktop.ScreenSaver\nExec=/usr/bin/python3 %1 %2\n"_s
                .arg(saver, log)
                .toUtf8());
        const PrivateBus bus(busConfiguration(folder));
        m_program.reset();
        QDBusConnection::disconnectFromBus(u"session"_s);
        m_program = std::make_unique<Program>(connection(bus, u"session"_s), std::nullopt);
        m_program->keepAwake.choose(0);
        QTRY_COMPARE(QFile(log).size(), 2);
        settle();
        QCOMPARE(QFile(log).size(), 2);
        QVERIFY(m_program->keepAwake.isActive());
    }

    void aServiceThatNeverAnswersRefuses()
    {
        m_saver->answers = false;
        m_program = std::make_unique<Program>(connection(m_session, u"session"_s), std::nullopt);
        m_program->keepAwake.choose(0);
        QTRY_COMPARE(m_saver->log.size(), 1);
        m_program->time.advance(4999ms);
        settle();
        QVERIFY(m_program->keepAwake.isActive());
        m_program->time.advance(1ms);
        QTRY_VERIFY(!m_program->keepAwake.isActive());
        // What it grants now nobody wants any more.
        m_saver->answerLate();
        QTRY_COMPARE(m_saver->log, (QStringList { asked(), u"UnInhibit 1"_s }));
    }

    void othersStandInForTheScreenSaver_data()
    {
        const Rows<QByteArray, bool> row;
        for (const QByteArray saver :
            { "grants", "refuses", "is missing", "ends", "never answers", "no bus" }) {
            row(saver, saver, true);
            row(saver + ", the portal alone", saver, false);
        }
    }
    void othersStandInForTheScreenSaver()
    {
        const auto current = Rows<QByteArray, bool>::current();
        const auto saver = std::get<QByteArray>(current);
        const auto displayServer = std::get<bool>(current);
        const FakeInhibitPortal portal(m_session);
        const auto hasBus = saver != "no bus";
        m_saver->refuses = saver == "refuses";
        m_saver->answers = saver != "never answers" && saver != "ends";
        m_program.reset();
        m_program = std::make_unique<Program>(hasBus ? connection(m_session, u"session"_s) : std::nullopt,
            std::nullopt,
            displayServer ? [this] { return std::make_unique<Substituted>(m_substituted); }
                          : LinuxPowerAssertions::Substitute());
        if (saver == "is missing")
            m_saver.reset();
        m_program->keepAwake.choose(0);
        if (hasBus && m_saver && !m_saver->answers)
            QTRY_COMPARE(m_saver->log.size(), 1);
        if (saver == "ends")
            m_saver.reset();
        else if (m_saver && !m_saver->answers)
            m_program->time.advance(5s);
        // The portal may grant what it does not keep.
        const auto standsIn = saver != "grants";
        for (const int hours : { 0, 3 }) {
            m_program->keepAwake.choose(hours);
            settle();
            QTRY_COMPARE(portal.held.size(), standsIn && hasBus ? 1 : 0);
            QCOMPARE(portal.log, QStringList(portal.held.size(), u"8 Nimbarrow keep awake"_s));
            QCOMPARE(m_substituted, standsIn && displayServer ? 1 : 0);
            QCOMPARE(m_program->keepAwake.isActive(), hasBus || displayServer);
        }
        m_program->keepAwake.deactivate();
        QTRY_COMPARE(portal.held.size(), 0);
        QTRY_COMPARE(m_substituted, 0);
    }

    void theXServerBlanksNothingMeanwhile()
    {
        const PrivateXServer server;
        const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> watcher(
            xcb_connect(server.name().constData(), nullptr), &xcb_disconnect);
        auto held = x11::suspendScreenSaver(server.name());
        QVERIFY(held);
        constexpr qint16 seconds = 1;
        xcb_set_screen_saver(watcher.get(), seconds, seconds, 1, 1);
        const auto isBlank = [&watcher] {
            const auto cookie = xcb_screensaver_query_info(watcher.get(), x11::rootWindow(watcher.get()));
            const auto reply = x11::owned(xcb_screensaver_query_info_reply(watcher.get(), cookie, nullptr));
            return reply && reply->state == XCB_SCREENSAVER_STATE_ON;
        };
        // The server keeps this time itself.
        QTest::qWait(1500);
        QVERIFY(!isBlank());
        held.reset();
        QTRY_VERIFY(isBlank());

        QVERIFY(!x11::suspendScreenSaver(":1999"));
    }
};

QTEST_GUILESS_MAIN(LinuxPowerAssertionsTest)
#include "LinuxPowerAssertionsTest.moc"
