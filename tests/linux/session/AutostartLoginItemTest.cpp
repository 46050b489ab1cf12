#include "linux/session/AutostartLoginItem.h"

#include "linux/session/XdgLocations.h"
#include "support/FileCalls.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <sys/stat.h>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

class AutostartLoginItemTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFileIsTheState()
    {
        const QTemporaryDir folder;
        const auto path = folder.filePath(u"config/autostart/ua.tessak.Nimbarrow.desktop"_s);
        AutostartLoginItem item(folder.filePath(u"config"_s), u"/usr/bin/nimbarrow"_s);
        QVERIFY(!item.isEnabled());
        QCOMPARE(item.setEnabled(false), std::nullopt);
        QCOMPARE(item.setEnabled(true), std::nullopt);
        QVERIFY(item.isEnabled());
        QVERIFY(AutostartLoginItem(folder.filePath(u"config"_s), u"/other"_s).isEnabled());
        QVERIFY(QFile::remove(path));
        QVERIFY(!item.isEnabled());
        QCOMPARE(item.setEnabled(true), std::nullopt);
        QCOMPARE(item.setEnabled(false), std::nullopt);
        QVERIFY(!QFile::exists(path));
    }

    void whatOthersWriteIsRead_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("enabled");
        const QByteArray entry = "[Desktop Entry]\nType=Application\nExec=/elsewhere/nimbarrow\n";
        QTest::newRow("another program's path") << entry << true;
        QTest::newRow("hidden") << entry + "Hidden=true\n" << false;
        QTest::newRow("switched off in the session settings") << entry
                + "X-GNOME-Autostart-enabled = false\r\n" << false;
        QTest::newRow("hidden in another group") << entry + "[Desktop Action x]\nHidden=true\n" << true;
        QTest::newRow("hidden in a comment") << entry + "#Hidden=true\n" << true;
        QTest::newRow("empty") << ""_ba << false;
        QTest::newRow("no group") << "Exec=/elsewhere/nimbarrow\n"_ba << false;
    }

    void whatOthersWriteIsRead()
    {
        QFETCH(QByteArray, text);
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"autostart"_s));
        QFile file(folder.filePath(u"autostart/ua.tessak.Nimbarrow.desktop"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        QTEST(AutostartLoginItem(folder.path(), u"/usr/bin/nimbarrow"_s).isEnabled(), "enabled");
    }

    void theProgramsPathIsQuoted_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("plain") << u"/usr/bin/nimbarrow"_s << "Exec=\"/usr/bin/nimbarrow\""_ba;
        QTest::newRow("space") << u"/opt/a b/ї"_s << "Exec=\"/opt/a b/ї\""_ba;
        QTest::newRow("percent") << u"/opt/100%u"_s << "Exec=\"/opt/100%%u\""_ba;
        QTest::newRow("dollar, quote, backquote") << u"/opt/$a\"`"_s << "Exec=\"/opt/\\\\$a\\\\\"\\\\`\""_ba;
        QTest::newRow("backslash") << u"/opt/a\\b"_s << "Exec=\"/opt/a\\\\\\\\b\""_ba;
        QTest::newRow("line feed") << u"/opt/a\nHidden=true"_s << "Exec=\"/opt/a\\nHidden=true\""_ba;
    }

    void theProgramsPathIsQuoted()
    {
        QFETCH(QString, program);
        QFETCH(QByteArray, line);
        const QTemporaryDir folder;
        AutostartLoginItem item(folder.path(), program);
        QCOMPARE(item.setEnabled(true), std::nullopt);
        QFile file(folder.filePath(u"autostart/ua.tessak.Nimbarrow.desktop"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().split('\n').contains(line));
    }

    void whatCannotBeWrittenIsTold()
    {
        const QTemporaryDir folder;
        QFile inTheWay(folder.filePath(u"config"_s));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        AutostartLoginItem item(folder.filePath(u"config"_s), u"/usr/bin/nimbarrow"_s);
        const auto place = folder.filePath(u"config/autostart/ua.tessak.Nimbarrow.desktop"_s);
        QVERIFY(item.setEnabled(true).value_or(QString()).startsWith(place + u": "_s));
        QVERIFY(!item.isEnabled());
    }

    void whatFindsNoRoomLeavesWhatIsThere()
    {
        const QTemporaryDir folder;
        AutostartLoginItem item(folder.path(), u"/usr/bin/nimbarrow"_s);
        QCOMPARE(item.setEnabled(true), std::nullopt);
        const FileCalls full(folder.path(), [](const char* name) { return name == "write"_ba ? ENOSPC : 0; });
        QVERIFY(AutostartLoginItem(folder.path(), u"/other"_s).setEnabled(true)->contains("space"_L1));
        QVERIFY(item.isEnabled());
    }

    void nobodyIsWaitedForAtTheOtherEndOfAPipe()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"autostart"_s));
        const auto path = folder.filePath(u"autostart/ua.tessak.Nimbarrow.desktop"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(!AutostartLoginItem(folder.path(), u"/usr/bin/nimbarrow"_s).isEnabled());
    }

    void onlyWholeFoldersCountAsApplications_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<bool>("outside");
        QTest::newRow("/usr") << u"/usr/bin/nimbarrow"_s << false;
        QTest::newRow("/opt") << u"/opt/nimbarrow/bin/nimbarrow"_s << false;
        QTest::newRow("/app") << u"/app/bin/nimbarrow"_s << false;
        QTest::newRow("sibling") << u"/optional/nimbarrow"_s << true;
        QTest::newRow("home") << u"/home/o/usr/bin/nimbarrow"_s << true;
        QTest::newRow("climbs out") << u"/usr/../home/o/nimbarrow"_s << true;
    }

    void onlyWholeFoldersCountAsApplications()
    {
        QFETCH(QString, program);
        QTEST(AutostartLoginItem(u"/nowhere"_s, program).runsOutsideApplications(), "outside");
    }

    void foldersOfTheUser_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QString>("folder");
        QTest::newRow("absolute") << "/data/o/"_ba << u"/data/o"_s;
        QTest::newRow("relative") << "data"_ba << QDir::homePath() + u"/.local/share"_s;
        QTest::newRow("none") << ""_ba << QDir::homePath() + u"/.local/share"_s;
    }

    void foldersOfTheUser()
    {
        QFETCH(QByteArray, variable);
        qputenv("XDG_DATA_HOME", variable);
        QTEST(XdgLocations().applicationSupport(), "folder");
    }
};

QTEST_GUILESS_MAIN(AutostartLoginItemTest)
#include "AutostartLoginItemTest.moc"
