#include "linux/calendar/DayWatch.h"

#include "support/PrivateBus.h"
#include "support/Test.h"

#include <QDBusMessage>

#include <cstdio>

class DayWatchTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    [[nodiscard]] DayWatch::Places places() const
    {
        DayWatch::Places places;
        places.zoneFile = m_folder.filePath(u"localtime"_s);
        places.nextDay = [] { return QDateTime::currentDateTime().addDays(1); };
        return places;
    }

    void linkZone(const QString& zone) const
    {
        // As the desktops do it: a new link takes the place of the old one.
        const auto link = m_folder.filePath(u"localtime"_s);
        QVERIFY(QFile::link("/usr/share/zoneinfo/"_L1 + zone, link + ".new"_L1));
        QCOMPARE(std::rename(qPrintable(link + ".new"_L1), qPrintable(link)), 0);
    }

private Q_SLOTS:
    void init() { linkZone(u"Europe/Berlin"_s); }

    void eachMidnightIsTold()
    {
        auto at = places();
        int asked = 0;
        at.nextDay = [&asked] {
            ++asked;
            return QDateTime::currentDateTime().addMSecs(asked < 3 ? 100 : 100'000);
        };
        const DayWatch watch({}, at);
        const QSignalSpy told(&watch, &DayWatch::dayChanged);
        QTRY_COMPARE(told.size(), 2);
        QCOMPARE(asked, 3);
    }

    void anotherTimeZoneIsTold()
    {
        const DayWatch watch({}, places());
        const QSignalSpy told(&watch, &DayWatch::dayChanged);
        // Another file of the folder is nothing.
        QFile other(m_folder.filePath(u"hostname"_s));
        QVERIFY(other.open(QIODevice::WriteOnly));
        linkZone(u"Asia/Tokyo"_s);
        QTRY_COMPARE(told.size(), 1);
        // The watch did not go with the link.
        linkZone(u"America/Lima"_s);
        QTRY_COMPARE(told.size(), 2);
    }

    void theEndOfASleepIsTold()
    {
        const PrivateBus bus;
        auto manager = QDBusConnection::connectToBus(bus.address(), u"login"_s);
        const DayWatch watch(QDBusConnection::connectToBus(bus.address(), u"program"_s), places());
        const QSignalSpy told(&watch, &DayWatch::dayChanged);
        for (const bool begins : { true, false }) {
            auto signal = QDBusMessage::createSignal(
                u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
            signal << begins;
            QVERIFY(manager.send(signal));
        }
        QTRY_COMPARE(told.size(), 1);
    }
};

QTEST_GUILESS_MAIN(DayWatchTest)
#include "DayWatchTest.moc"
