#include "linux/applications/DesktopApplications.h"
#include "linux/applications/DesktopEntries.h"
#include "linux/keys/BusHotKeys.h"
#include "linux/keys/InputWays.h"
#include "linux/keys/RemoteDesktop.h"
#include "support/FakeDesktop.h"
#include "support/ManualQueues.h"
#include "support/Portals.h"
#include "support/PrivateBus.h"
#include "support/TestFolder.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using State = RemoteDesktop::State;

namespace {

class InputPortals final : public Portals {
public:
    InputPortals() { versions = { { u"RemoteDesktop"_s, 2 }, { u"GlobalShortcuts"_s, 1 } }; }

    QString token = u"first"_s;
    QString session;
    /// Whether the answer lists what has been bound.
    bool listsShortcuts = true;

protected:
    Answer hear(const QDBusMessage& question, const QVariantMap& options) override
    {
        const auto arguments = question.arguments();
        const auto member = question.member();
        if (member == "Close"_L1)
            asked << u"Close"_s;
        if (member == "NotifyKeyboardKeysym"_L1)
            asked << u"%1 %2"_s.arg(QString::number(arguments.at(2).toInt(), 16), arguments.at(3).toString());
        if (member == "CreateSession"_L1) {
            session = u"/org/freedesktop/portal/desktop/session/x/"_s
                + options.value(u"session_handle_token"_s).toString();
            return { 0, { { u"session_handle"_s, session } } };
        }
        if (member == "SelectDevices"_L1)
            asked << u"%1 %2 %3"_s.arg(options.value(u"types"_s).toString(),
                options.value(u"persist_mode"_s).toString(),
                options.value(u"restore_token"_s, u"-"_s).toString());
        if (member == "Start"_L1)
            return { response, { { u"devices"_s, 1U }, { u"restore_token"_s, token } } };
        if (member != "BindShortcuts"_L1)
            return {};
        const auto shortcuts = arguments.at(1).value<QDBusArgument>();
        shortcuts.beginArray();
        shortcuts.beginStructure();
        QString id;
        QVariantMap facts;
        shortcuts >> id >> facts;
        shortcuts.endStructure();
        shortcuts.endArray();
        asked << QStringList { id, facts.value(u"description"_s).toString(),
            facts.value(u"preferred_trigger"_s).toString() }
                     .join(u'|');
        if (!listsShortcuts)
            return { response };
        return { response, { { u"shortcuts"_s, arguments.at(1) } } };
    }
};

} // namespace

/// On a double of the portals; there is no desktop here that has them.
class PortalInputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_disk = std::make_unique<TestFolder>();
        m_portals = std::make_unique<InputPortals>();
        m_defaults.values.clear();
        QVERIFY(m_portals->serve(m_bus.address(), u"desktop"_s));
        m_program.emplace(QDBusConnection::connectToBus(m_bus.address(), u"program"_s));
    }

    void cleanup()
    {
        m_trust.reset();
        m_program.reset();
        QDBusConnection::disconnectFromBus(u"program"_s);
        QDBusConnection::disconnectFromBus(u"desktop"_s);
    }

    void eachSessionHasItsWays_data()
    {
        QTest::addColumn<InputFacts>("facts");
        QTest::addColumn<FrontWay>("front");
        QTest::addColumn<PasteWay>("paste");

        using enum DisplaySystem;
        QTest::newRow("X11") << InputFacts { X11 } << FrontWay::X11 << PasteWay::TestExtension;
        QTest::newRow("sway") << InputFacts { Wayland, true, false, true } << FrontWay::ForeignToplevels
                              << PasteWay::VirtualKeyboard;
        QTest::newRow("sway that lends nothing")
            << InputFacts { Wayland } << FrontWay::Nothing << PasteWay::Portal;
        QTest::newRow("KDE, installed")
            << InputFacts { Wayland, false, true, false, true } << FrontWay::KWin << PasteWay::FakeInput;
        QTest::newRow("KDE, not installed")
            << InputFacts { Wayland, false, true } << FrontWay::KWin << PasteWay::Portal;
        QTest::newRow("GNOME") << InputFacts { XWayland } << FrontWay::Nothing << PasteWay::Portal;
    }
    void eachSessionHasItsWays()
    {
        QFETCH(const InputFacts, facts);
        QTEST(frontWay(facts), "front");
        QTEST(pasteWay(facts), "paste");
    }

    void hotKeyGoesTheBestWay_data()
    {
        QTest::addColumn<BusKeyFacts>("facts");
        QTest::addColumn<HotKeyWay>("way");

        QTest::newRow("KDE") << BusKeyFacts { true, true, 1 } << HotKeyWay::GlobalAccel;
        QTest::newRow("KDE without its service") << BusKeyFacts { true, false, 1 } << HotKeyWay::Portal;
        QTest::newRow("GNOME with a program of KDE") << BusKeyFacts { false, true, 1 } << HotKeyWay::Portal;
        QTest::newRow("GNOME before 48") << BusKeyFacts { false, false, 0, true } << HotKeyWay::Custom;
        QTest::newRow("sway with a program of KDE") << BusKeyFacts { false, true, 0 } << HotKeyWay::Nothing;
    }
    void hotKeyGoesTheBestWay()
    {
        QFETCH(const BusKeyFacts, facts);
        QTEST(hotKeyWay(facts), "way");
    }

    void compositorIsToldByALine_data()
    {
        QTest::addColumn<QString>("desktops");
        QTest::addColumn<QString>("line");

        QTest::newRow("sway") << u"sway"_s << u"bindsym Mod4+Shift+v exec nimbarrow --toggle"_s;
        QTest::newRow("labwc")
            << u"labwc:wlroots"_s
            << u"<keybind key=\"W-S-v\"><action name=\"Execute\" command=\"nimbarrow --toggle\"/></keybind>"_s;
        QTest::newRow("another") << u"COSMIC"_s << QString();
        QTest::newRow("unnamed") << QString() << QString();
    }
    void compositorIsToldByALine()
    {
        QFETCH(const QString, desktops);
        QTEST(hotKeyLine(desktops), "line");
    }

    void theUserIsAskedOnceAndATokenRemembersIt()
    {
        QVERIFY(start() == State::NotDetermined);
        m_trust->type({ 0x76 });
        QTest::qWait(50);
        QCOMPARE(m_portals->asked, QStringList());

        m_trust->prompt();
        QTRY_COMPARE(m_portals->asked, (QStringList { u"1 2 -"_s, u"Close"_s }));
        QVERIFY(m_trust->isTrusted());
        m_queues.runAll();
        QCOMPARE(token(), "first");
        QCOMPARE(QFileInfo(tokenPath()).permissions() & ~QFile::Permissions(0x7000),
            QFile::ReadUser | QFile::WriteUser);

        // Another run: each token is good for one session.
        m_portals->asked.clear();
        m_portals->token = u"second"_s;
        QVERIFY(start() == State::Trusted);
        m_trust->prompt();
        DesktopApplications applications(std::make_unique<DesktopEntries>(QStringList(), u"C"_s));
        RemoteDesktopKeystrokes(*m_trust, applications).postPaste();
        QTRY_COMPARE(m_portals->asked,
            (QStringList { u"1 2 first"_s, u"ffe3 1"_s, u"76 1"_s, u"76 0"_s, u"ffe3 0"_s, u"Close"_s }));
        m_queues.runAll();
        QCOMPARE(token(), "second");
    }

    void whatTheUserAnswersCounts_data()
    {
        QTest::addColumn<uint>("version");
        QTest::addColumn<uint>("response");
        QTest::addColumn<QString>("newToken");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<State>("state");

        QTest::newRow("no") << 2U << 1U << QString() << QByteArray() << State::NotTrusted;
        QTest::newRow("no more") << 2U << 1U << QString() << QByteArray("old") << State::NotTrusted;
        QTest::newRow("closed") << 2U << 2U << QString() << QByteArray() << State::NotDetermined;
        QTest::newRow("failed") << 2U << 2U << QString() << QByteArray("old") << State::Trusted;
        QTest::newRow("this once") << 2U << 0U << QString() << QByteArray("old") << State::NotDetermined;
        QTest::newRow("no portal") << 0U << 0U << u"t"_s << QByteArray("old") << State::Unavailable;
        QTest::newRow("forgetful portal") << 1U << 0U << u"t"_s << QByteArray() << State::Unavailable;
    }
    void whatTheUserAnswersCounts()
    {
        QFETCH(const State, state);
        QFETCH(const QByteArray, before);
        QFETCH(const uint, version);
        QFETCH(const uint, response);
        QFETCH(const QString, newToken);
        m_portals->versions[u"RemoteDesktop"_s] = version;
        m_portals->response = response;
        m_portals->token = newToken;
        if (!before.isEmpty())
            m_disk->write(u"trust/token"_s, before);
        QVERIFY(start()
            == (version < 2            ? State::Unavailable
                    : before.isEmpty() ? State::NotDetermined
                                       : State::Trusted));
        if (response == 2)
            QTest::ignoreMessage(QtWarningMsg, "The desktop's portal does not let the program type");
        if (before.isEmpty())
            m_trust->prompt();
        else
            m_trust->type({ 0x76 });
        // Once the session has been closed all is over.
        if (version >= 2)
            QTRY_COMPARE(m_portals->asked.value(m_portals->asked.size() - 1), u"Close"_s);
        QTRY_VERIFY(m_trust->state() == state);
        m_queues.runAll();
        QCOMPARE(token(), state == State::Trusted || version < 2 ? before : QByteArray());
        // Who has said no may change their mind.
        if (state == State::NotTrusted) {
            m_portals->response = 0;
            m_portals->token = u"later"_s;
            m_trust->prompt();
            QTRY_VERIFY(m_trust->isTrusted());
        }
    }

    void aPortalThatGoesTakesItsQuestionAlong()
    {
        QVERIFY(start() == State::NotDetermined);
        m_portals->isSilent = true;
        m_trust->prompt();
        QTRY_VERIFY(!m_portals->session.isEmpty());
        QTest::ignoreMessage(QtWarningMsg, "The desktop's portal does not let the program type");
        m_portals->isSilent = false;
        QVERIFY(m_portals->serve(m_bus.address(), u"desktop"_s));
        QTRY_VERIFY((m_trust->prompt(), m_trust->isTrusted()));
    }

    void aNewPortalIsToldTheHotKeyAnew()
    {
        BusHotKeys hotKeys(m_program, m_defaults, false, u"Show"_s);
        const auto registered = hotKeys.registerKey(Key::V, KeyModifier::Command, [] {});
        QTRY_COMPARE(m_portals->asked.size(), 1);
        QTRY_COMPARE(m_defaults.string(u"portalHotKey"), u"granted"_s);
        QVERIFY(m_portals->serve(m_bus.address(), u"desktop"_s));
        QTRY_COMPARE(m_portals->asked.size(), 2);
        QCOMPARE(m_portals->asked.at(1), m_portals->asked.at(0));
    }

    void hotKeyComesThroughThePortal()
    {
        auto fired = 0;
        BusHotKeys hotKeys(m_program, m_defaults, false, u"Show"_s);
        auto registered
            = hotKeys.registerKey(Key::V, KeyModifier::Command | KeyModifier::Shift, [&fired] { ++fired; });
        QTRY_COMPARE(m_portals->asked, QStringList(u"toggle-history|Show|LOGO+SHIFT+v"_s));
        QCOMPARE(hotKeys.way(), std::optional(HotKeyWay::Portal));
        const auto press = [this](const QString& session, const QString& id) {
            auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                u"org.freedesktop.portal.GlobalShortcuts"_s, u"Activated"_s);
            signal << QVariant::fromValue(QDBusObjectPath(session)) << id << qulonglong(1) << QVariantMap();
            QDBusConnection(u"desktop"_s).send(signal);
        };
        press(u"/another"_s, u"toggle-history"_s);
        press(m_portals->session, u"another"_s);
        press(m_portals->session, u"toggle-history"_s);
        QTRY_COMPARE(fired, 1);
        registered.reset();
        QTRY_COMPARE(m_portals->asked.value(1), u"Close"_s);
        press(m_portals->session, u"toggle-history"_s);
        QTest::qWait(50);
        QCOMPARE(fired, 1);
    }

    void thereIsAHotKeyWhereOneIsBound_data()
    {
        QTest::addColumn<uint>("response");
        QTest::addColumn<bool>("lists");
        QTest::addColumn<HotKeyWay>("way");

        QTest::newRow("yes") << 0U << true << HotKeyWay::Portal;
        QTest::newRow("no") << 1U << false << HotKeyWay::Nothing;
        QTest::newRow("failed") << 2U << false << HotKeyWay::Nothing;
        // GNOME 48 may say so.
        QTest::newRow("bound all the same") << 2U << true << HotKeyWay::Portal;
    }
    void thereIsAHotKeyWhereOneIsBound()
    {
        QFETCH(const HotKeyWay, way);
        QFETCH(const bool, lists);
        QFETCH(const uint, response);
        m_portals->response = response;
        m_portals->listsShortcuts = lists;
        if (response == 2 && !lists)
            QTest::ignoreMessage(QtWarningMsg, "The desktop's portal gives no hot key");
        BusHotKeys hotKeys(m_program, m_defaults, false, u"Show"_s);
        auto registered = hotKeys.registerKey(Key::V, KeyModifier::Command, [] {});
        QTRY_COMPARE(m_portals->asked.size(), 1);
        QTRY_VERIFY(!m_defaults.string(u"portalHotKey").isEmpty());
        QCOMPARE(hotKeys.way(), std::optional(way));
        // At the next start nobody who has refused it is asked, but whoever switches it on is.
        QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit"));
        registered.reset();
        BusHotKeys next(m_program, m_defaults, false, u"Show"_s);
        registered = next.registerKey(Key::V, KeyModifier::Command, [] {});
        const auto questions = [this] { return m_portals->asked.filter(u"Show"_s).size(); };
        QTRY_COMPARE(questions(), way == HotKeyWay::Portal ? 2 : 1);
        QTRY_COMPARE(next.way(), std::optional(way));
        if (way == HotKeyWay::Portal)
            return;
        registered.reset();
        if (response == 2)
            QTest::ignoreMessage(QtWarningMsg, "The desktop's portal gives no hot key");
        registered = next.registerKey(Key::V, KeyModifier::Command, [] {});
        QTRY_COMPARE(questions(), 2);
        QTRY_VERIFY(!m_defaults.string(u"portalHotKey").isEmpty());
    }

    void withoutAServiceThereIsNoHotKey()
    {
        m_portals->versions.remove(u"GlobalShortcuts"_s);
        BusHotKeys hotKeys(m_program, m_defaults, false, u"Show"_s);
        QVERIFY(!hotKeys.way());
        const auto registered = hotKeys.registerKey(Key::V, KeyModifier::Command, [] {});
        QVERIFY(registered);
        QTRY_COMPARE(hotKeys.way(), std::optional(HotKeyWay::Nothing));
        QCOMPARE(BusHotKeys({}, m_defaults, true, {}).way(), std::optional(HotKeyWay::Nothing));
    }

private:
    [[nodiscard]] QString tokenPath() const { return m_disk->filePath(u"trust/token"_s); }

    [[nodiscard]] QByteArray token() const
    {
        QFile file(tokenPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// What is known once the portal has been asked.
    State start()
    {
        m_trust = std::make_unique<RemoteDesktop>(m_program, tokenPath(), m_queues);
        m_queues.runAll();
        const QSignalSpy changed(m_trust.get(), &RemoteDesktop::changed);
        (void)QTest::qWaitFor(
            [&] { return m_portals->versions[u"RemoteDesktop"_s] < 2 || !changed.isEmpty(); }, 5000);
        return m_trust->state();
    }

    PrivateBus m_bus;
    ManualQueues m_queues;
    std::unique_ptr<TestFolder> m_disk;
    std::unique_ptr<InputPortals> m_portals;
    FakeUserDefaults m_defaults;
    std::optional<QDBusConnection> m_program;
    std::unique_ptr<RemoteDesktop> m_trust;
};

QTEST_GUILESS_MAIN(PortalInputTest)

#include "PortalInputTest.moc"
