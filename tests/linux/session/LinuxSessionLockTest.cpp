#include "linux/session/LinuxSessionLock.h"

#include "support/BusService.h"
#include "support/FakeDesktop.h"
#include "support/PrivateBus.h"
#include "support/Test.h"

#include <QDBusVariant>

namespace {

const QString screenSaver = u"org.gnome.ScreenSaver"_s;
const QString loginManager = u"org.freedesktop.login1"_s;
const QString loginSession = u"org.freedesktop.login1.Session"_s;
const QString lockedHint = u"LockedHint"_s;

} // namespace

/// A service of a bus that answers whether the session is locked, as a screen saver or as the login manager.
class FakeLocker final : public BusService {
public:
    FakeLocker(const QString& address, const QString& name, bool locked)
        : BusService(address, name,
            name == loginManager ? u"/org/freedesktop/login1/session/auto"_s
                                 : u'/' + QString(name).replace(u'.', u'/'))
        , m_isLocked(locked)
    {
    }

    void setLocked(bool locked)
    {
        m_isLocked = locked;
        announce(locked);
    }

    /// Whether it is so or not.
    void announce(bool locked)
    {
        auto signal = QDBusMessage::createSignal(u"/somewhere"_s, m_name, u"ActiveChanged"_s);
        signal << locked;
        if (isLogin()) {
            signal = QDBusMessage::createSignal(u"/org/freedesktop/login1/session/_32"_s,
                u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
            signal << loginSession << QVariantMap { { lockedHint, locked } } << QStringList();
        }
        m_bus.send(signal);
    }

    bool handleMessage(const QDBusMessage& question, const QDBusConnection& bus) override
    {
        const QVariant answer(m_isLocked);
        if (isLogin()) {
            return question.member() == "Get"_L1
                && question.arguments() == QVariantList { loginSession, lockedHint }
            && bus.send(question.createReply(QVariant::fromValue(QDBusVariant(answer))));
        }
        return question.member() == "GetActive"_L1 && bus.send(question.createReply(answer));
    }

private:
    [[nodiscard]] bool isLogin() const { return m_name == loginManager; }

    bool m_isLocked;
};

class LinuxSessionLockTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void followsEveryService_data()
    {
        const Rows<QString> row;
        for (const auto* name :
            { "org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
                "org.mate.ScreenSaver", "org.xfce.ScreenSaver", "org.freedesktop.login1" })
            row(name, QString::fromLatin1(name));
    }
    void followsEveryService()
    {
        const auto [name] = Rows<QString>::current();
        // One that is locked when the program starts, and one that comes later.
        auto locker = std::make_unique<FakeLocker>(m_bus.address(), name, true);
        const LinuxSessionLock lock(m_session, m_system);
        QTRY_VERIFY(lock.isLocked());
        locker->setLocked(false);
        QTRY_VERIFY(!lock.isLocked());
        locker->setLocked(true);
        QTRY_VERIFY(lock.isLocked());
        // A screen saver that has ended locks nothing.
        locker.reset();
        QTRY_VERIFY(!lock.isLocked());
        locker = std::make_unique<FakeLocker>(m_bus.address(), name, true);
        QTRY_VERIFY(lock.isLocked());

        // A signal alone, which anybody can send, does not unlock it.
        QSignalSpy changes(&lock, &SessionLock::changed);
        locker->announce(false);
        QTest::qWait(50);
        QVERIFY(lock.isLocked() && changes.isEmpty());
    }

    void isLockedWhileAnybodySaysSo()
    {
        FakeLocker saver(m_bus.address(), screenSaver, false);
        FakeLocker login(m_bus.address(), loginManager, true);
        auto display = std::make_unique<FakeSessionLock>();
        display->setLocked(true);
        LinuxSessionLock lock(m_session, m_system);
        lock.follow(*display);
        QVERIFY(lock.isLocked());
        saver.setLocked(true);
        login.setLocked(false);
        display->setLocked(false);
        QTest::qWait(50);
        QVERIFY(lock.isLocked());
        saver.setLocked(false);
        QTRY_VERIFY(!lock.isLocked());
        display->setLocked(true);
        QVERIFY(lock.isLocked());
        display.reset();
        saver.announce(false);
        QTRY_VERIFY(!lock.isLocked());
    }

    void withoutABusNothingIsLocked() { QVERIFY(!LinuxSessionLock({}, {}).isLocked()); }

private:
    PrivateBus m_bus;
    QDBusConnection m_session = QDBusConnection::connectToBus(m_bus.address(), u"session"_s);
    QDBusConnection m_system = QDBusConnection::connectToBus(m_bus.address(), u"system"_s);
};

QTEST_GUILESS_MAIN(LinuxSessionLockTest)

#include "LinuxSessionLockTest.moc"
