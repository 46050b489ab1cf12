#include "linux/applications/KWinWindows.h"

#include "linux/applications/DesktopEntries.h"
#include "support/PrivateBus.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QCoreApplication>
#include <QDBusContext>
#include <QDBusMessage>
#include <QRegularExpression>

/// KWin as who gives it a script knows it. What the script would tell is told by the test.
class FakeKWin final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Scripting")

public:
    explicit FakeKWin(QDBusConnection bus)
    {
        bus.registerObject(u"/Scripting"_s, this, QDBusConnection::ExportAllSlots);
        bus.registerService(u"org.kde.KWin"_s);
    }

    QString loading;
    /// Whom the script calls: the name of a connection, a path and an interface.
    QStringList called;

public Q_SLOTS:
    bool unloadScript(const QString& /*name*/) { return false; }

    int loadScript(const QString& path, const QString& /*name*/)
    {
        static const QRegularExpression call(uR"re(callDBus\("(.+)", "(.+)", "(.+)", method)re"_s);
        called = call.match(QString::fromUtf8(readFile(path))).capturedTexts().mid(1);
        if (loading == "hangs"_L1)
            setDelayedReply(true);
        else if (loading == "is forbidden"_L1)
            sendErrorReply(QDBusError::AccessDenied, u"no"_s);
        return loading == "is refused"_L1 ? -1 : 7;
    }
};

class KWinWindowsTest : public QObject {
    Q_OBJECT

    const PrivateBus m_server;
    const QDBusConnection m_kwinsBus = QDBusConnection::connectToBus(m_server.address(), u"kwin"_s);
    const QDBusConnection m_bus = QDBusConnection::connectToBus(m_server.address(), u"program"_s);
    const QString m_ownPid = QString::number(QCoreApplication::applicationPid());

    std::unique_ptr<KWinWindows> windows()
    {
        return std::make_unique<KWinWindows>(
            m_bus, std::make_unique<DesktopEntries>(QStringList(), u"en_GB"_s));
    }

    /// Returns when the program has heard it.
    static void tell(
        const QDBusConnection& bus, const FakeKWin& kwin, const QString& method, const QVariantList& facts)
    {
        auto call = QDBusMessage::createMethodCall(kwin.called[0], kwin.called[1], kwin.called[2], method);
        call.setArguments(facts);
        QCOMPARE(answerTo(call, bus).type(), QDBusMessage::ReplyMessage);
    }

private Q_SLOTS:
    void nothingIsKnownUntilTheScriptHasSpoken_data()
    {
        const Rows<QString, bool> row;
        row("loaded, and silent", u"works"_s, true);
        row("no answer", u"hangs"_s, true);
        row("refused", u"is refused"_s, false);
        row("forbidden", u"is forbidden"_s, false);
        row("no KWin", {}, false);
    }
    void nothingIsKnownUntilTheScriptHasSpoken()
    {
        const auto [loading, mayStillCome] = Rows<QString, bool>::current();
        std::unique_ptr<FakeKWin> kwin;
        if (!loading.isEmpty()) {
            kwin = std::make_unique<FakeKWin>(m_kwinsBus);
            kwin->loading = loading;
        }
        const auto applications = windows();
        QVERIFY(!applications->tellsFront());
        if (!mayStillCome) {
            QTRY_VERIFY(applications->tellsFront());
            QVERIFY(!*applications->tellsFront());
        } else {
            QTRY_VERIFY(!kwin->called.isEmpty());
            // Time for what must not come.
            QTest::qWait(50);
            QVERIFY(!applications->tellsFront());
        }
        QDBusConnection(m_kwinsBus).unregisterService(u"org.kde.KWin"_s);
    }

    void theScriptAloneIsBelieved()
    {
        const FakeKWin kwin(m_kwinsBus);
        const auto applications = windows();
        QTRY_VERIFY(!kwin.called.isEmpty());
        tell(m_bus, kwin, u"activated"_s, { u"forged"_s });
        QVERIFY(!applications->tellsFront());
        tell(m_kwinsBus, kwin, u"activated"_s, { QString() });
        QCOMPARE(applications->tellsFront(), std::optional(true));
        QVERIFY(!applications->frontmost());

        // Before KWin 6 a window is there first and in front then; since, it is the other way round.
        tell(m_kwinsBus, kwin, u"opened"_s, { u"one"_s, QString(), u"editor"_s, m_ownPid });
        tell(m_kwinsBus, kwin, u"activated"_s, { u"one"_s });
        const auto first = applications->frontmost();
        QVERIFY(first);
        tell(m_kwinsBus, kwin, u"activated"_s, { u"two"_s });
        tell(m_kwinsBus, kwin, u"opened"_s, { u"two"_s, QString(), u"editor"_s, m_ownPid });
        const auto second = applications->frontmost();
        QVERIFY(second && second != first);
        QCOMPARE(applications->withProcess(m_ownPid.toInt()), second);
        tell(m_bus, kwin, u"closed"_s, { u"two"_s });
        QCOMPARE(applications->frontmost(), second);
    }
};

QTEST_GUILESS_MAIN(KWinWindowsTest)
#include "KWinWindowsTest.moc"
