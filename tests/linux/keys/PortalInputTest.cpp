#include "linux/applications/DesktopApplications.h"
#include "linux/applications/DesktopEntries.h"
#include "linux/keys/BusHotKeys.h"
#include "linux/keys/InputWays.h"
#include "linux/keys/RemoteDesktop.h"
#include "support/FakeDesktop.h"
#include "support/ManualQueues.h"
#include "support/Portals.h"
#include "support/PrivateBus.h"
#include "support/Test.h"
#include "support/TestFolder.h"

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
        const Rows<InputFacts, FrontWay, PasteWay> row;
        using enum DisplaySystem;
        row("X11", { X11 }, FrontWay::X11, PasteWay::TestExtension);
        row("sway", { Wayland, true, false, true }, FrontWay::ForeignToplevels, PasteWay::VirtualKeyboard);
        row("sway that lends nothing", { Wayland }, FrontWay::Nothing, PasteWay::Portal);
        row("KDE, installed", { Wayland, false, true, false, true }, FrontWay::KWin, PasteWay::FakeInput);
        row("KDE, not installed", { Wayland, false, true }, FrontWay::KWin, PasteWay::Portal);
        row("GNOME", { XWayland }, FrontWay::Nothing, PasteWay::Portal);
    }
    void eachSessionHasItsWays()
    {
        const auto [facts, front, paste] = Rows<InputFacts, FrontWay, PasteWay>::current();
        QCOMPARE(frontWay(facts), front);
        QCOMPARE(pasteWay(facts), paste);
    }

    void hotKeyGoesTheBestWay_data()
    {
        const Rows<BusKeyFacts, HotKeyWay> row;
        row("KDE", { true, true, 1 }, HotKeyWay::GlobalAccel);
        row("KDE without its service", { true, false, 1 }, HotKeyWay::Portal);
        row("GNOME with a program of KDE", { false, true, 1 }, HotKeyWay::Portal);
        row("GNOME before 48", { false, false, 0, true }, HotKeyWay::Custom);
        row("sway with a program of KDE", { false, true, 0 }, HotKeyWay::Nothing);
    }
    void hotKeyGoesTheBestWay()
    {
        const auto [facts, way] = Rows<BusKeyFacts, HotKeyWay>::current();
        QCOMPARE(hotKeyWay(facts), way);
    }

    void compositorIsToldByALine_data()
    {
        const Rows<QString, QString> row;
        row("sway", u"sway"_s, u"bindsym Mod4+Shift+v exec nimbarrow --toggle"_s);
        row("labwc", u"labwc:wlroots"_s,
            u"<keybind key=\"W-S-v\"><action name=\"Execute\" command=\"nimbarrow --toggle\"/></keybind>"_s);
        row("another", u"COSMIC"_s, {});
        row("unnamed", {}, {});
    }
    void compositorIsToldByALine()
    {
        const auto [desktops, line] = Rows<QString, QString>::current();
        QCOMPARE(hotKeyLine(desktops), line);
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
        const Rows<uint, uint, QString, QByteArray, State> row;
        row("no", 2, 1, {}, {}, State::NotTrusted);
        row("no more", 2, 1, {}, "old", State::NotTrusted);
        row("closed", 2, 2, {}, {}, State::NotDetermined);
        row("failed", 2, 2, {}, "old", State::Trusted);
        row("this once", 2, 0, {}, "old", State::NotDetermined);
        row("no portal", 0, 0, u"t"_s, "old", State::Unavailable);
        row("forgetful portal", 1, 0, u"t"_s, {}, State::Unavailable);
    }
    void whatTheUserAnswersCounts()
    {
        const auto [version, response, newToken, before, state]
            = Rows<uint, uint, QString, QByteArray, State>::current();
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
        const Rows<uint, bool, HotKeyWay> row;
        row("yes", 0, true, HotKeyWay::Portal);
        row("no", 1, false, HotKeyWay::Nothing);
        row("failed", 2, false, HotKeyWay::Nothing);
        // GNOME 48 may say so.
        row("bound all the same", 2, true, HotKeyWay::Portal);
    }
    void thereIsAHotKeyWhereOneIsBound()
    {
        const auto [response, lists, way] = Rows<uint, bool, HotKeyWay>::current();
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

    [[nodiscard]] QByteArray token() const { return readFile(tokenPath()); }

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
