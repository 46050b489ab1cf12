#include "linux/session/AutostartLoginItem.h"

#include "linux/session/XdgLocations.h"
#include "support/FileCalls.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <cerrno>

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
        const Rows<QByteArray, bool> row;
        const QByteArray entry = "[Desktop Entry]\nType=Application\nExec=/elsewhere/nimbarrow\n";
        row("another program's path", entry, true);
        row("hidden", entry + "Hidden=true\n", false);
        row("switched off in the session settings", entry + "X-GNOME-Autostart-enabled = false\r\n", false);
        row("hidden in another group", entry + "[Desktop Action x]\nHidden=true\n", true);
        row("hidden in a comment", entry + "#Hidden=true\n", true);
        row("empty", "", false);
        row("no group", "Exec=/elsewhere/nimbarrow\n", false);
    }
    void whatOthersWriteIsRead()
    {
        const auto [text, enabled] = Rows<QByteArray, bool>::current();
        const QTemporaryDir folder;
        writeFile(folder.filePath(u"autostart/ua.tessak.Nimbarrow.desktop"_s), text);
        QCOMPARE(AutostartLoginItem(folder.path(), u"/usr/bin/nimbarrow"_s).isEnabled(), enabled);
    }

    void theProgramsPathIsQuoted_data()
    {
        const Rows<QString, QByteArray> row;
        row("plain", u"/usr/bin/nimbarrow"_s, "Exec=\"/usr/bin/nimbarrow\""_ba);
        row("space", u"/opt/a b/ї"_s, "Exec=\"/opt/a b/ї\""_ba);
        row("percent", u"/opt/100%u"_s, "Exec=\"/opt/100%%u\""_ba);
        row("dollar, quote, backquote", u"/opt/$a\"`"_s, "Exec=\"/opt/\\\\$a\\\\\"\\\\`\""_ba);
        row("backslash", u"/opt/a\\b"_s, "Exec=\"/opt/a\\\\\\\\b\""_ba);
        row("line feed", u"/opt/a\nHidden=true"_s, "Exec=\"/opt/a\\nHidden=true\""_ba);
    }
    void theProgramsPathIsQuoted()
    {
        const auto [program, line] = Rows<QString, QByteArray>::current();
        const QTemporaryDir folder;
        AutostartLoginItem item(folder.path(), program);
        QCOMPARE(item.setEnabled(true), std::nullopt);
        QVERIFY(
            readFile(folder.filePath(u"autostart/ua.tessak.Nimbarrow.desktop"_s)).split('\n').contains(line));
    }

    void whatCannotBeWrittenIsTold()
    {
        const QTemporaryDir folder;
        writeFile(folder.filePath(u"config"_s), {});
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

    void onlyWholeFoldersCountAsApplications_data()
    {
        const Rows<QString, bool> row;
        row("/usr", u"/usr/bin/nimbarrow"_s, false);
        row("/opt", u"/opt/nimbarrow/bin/nimbarrow"_s, false);
        row("/app", u"/app/bin/nimbarrow"_s, false);
        row("sibling", u"/optional/nimbarrow"_s, true);
        row("home", u"/home/o/usr/bin/nimbarrow"_s, true);
        row("climbs out", u"/usr/../home/o/nimbarrow"_s, true);
    }
    void onlyWholeFoldersCountAsApplications()
    {
        const auto [program, outside] = Rows<QString, bool>::current();
        QCOMPARE(AutostartLoginItem(u"/nowhere"_s, program).runsOutsideApplications(), outside);
    }

    void foldersOfTheUser()
    {
        const auto usual = QDir::homePath() + u"/.local/share"_s;
        for (const auto& [variable, folder] :
            { std::pair("/data/o/"_ba, u"/data/o"_s), { "data"_ba, usual }, { ""_ba, usual } }) {
            qputenv("XDG_DATA_HOME", variable);
            QCOMPARE(XdgLocations().applicationSupport(), folder);
        }
    }
};

QTEST_GUILESS_MAIN(AutostartLoginItemTest)
#include "AutostartLoginItemTest.moc"
