#include "linux/applications/DesktopEntries.h"

#include "support/Test.h"
#include "support/TestFolder.h"

namespace {

const QByteArray editor = "# a comment\n[Desktop Entry]\nType=Application\nName=Editor\nName[uk]=Редактор\n"
                          "Name[uk_UA]=Редактор України\nName[de]=Bearbeiter\nStartupWMClass=TheEditor\n"
                          "Categories=Utility;TextEditor;\n[Desktop Action new]\nName=New Window\n";

QByteArray program(const QByteArray& name, const QByteArray& more = {})
{
    return "[Desktop Entry]\nType=Application\nName=" + name + '\n' + more;
}

} // namespace

class DesktopEntriesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nameFollowsTheLocale_data()
    {
        const Rows<QString, QString> row;
        row("language and country", u"uk_UA"_s, u"Редактор України"_s);
        row("language", u"uk_PL"_s, u"Редактор"_s);
        row("language alone", u"de"_s, u"Bearbeiter"_s);
        row("no translation", u"fr_FR"_s, u"Editor"_s);
        row("no locale", u"C"_s, u"Editor"_s);
    }
    void nameFollowsTheLocale()
    {
        const auto [locale, name] = Rows<QString, QString>::current();
        const auto entry = DesktopEntry::parse(u"editor"_s, editor, locale);
        QVERIFY(entry);
        QCOMPARE(entry->name, name);
        QCOMPARE(entry->categories, QStringList({ u"Utility"_s, u"TextEditor"_s }));
    }

    void whatIsNoProgramIsNoEntry()
    {
        QVERIFY(!DesktopEntry::parse(u"a"_s, "[Desktop Entry]\nType=Link\nName=A\n", u"C"_s));
        QVERIFY(!DesktopEntry::parse(u"a"_s, "[Desktop Entry]\nType=Application\n", u"C"_s));
        QVERIFY(!DesktopEntry::parse(u"a"_s, "[Other]\nType=Application\nName=A\n", u"C"_s));
        QVERIFY(!DesktopEntry::parse(u"a"_s, QByteArray(1000, '\xff'), u"C"_s));
    }

    void windowClassFindsItsProgram_data()
    {
        const Rows<QString, QString> row;
        row("named in the entry", u"TheEditor"_s, u"editor"_s);
        row("the entry's word stands before a file's name", u"painter"_s, u"other"_s);
        row("file name in another case", u"PLAYER"_s, u"player"_s);
        row("end of a reversed domain name", u"Reader"_s, u"org.example.Reader"_s);
        row("in a sub-folder", u"kde-Mail"_s, u"kde-mail"_s);
        row("hidden by the user", u"removed"_s, {});
        row("unknown", u"Nothing"_s, {});
    }
    void windowClassFindsItsProgram()
    {
        const auto [windowClass, id] = Rows<QString, QString>::current();
        m_folder->write(u"system/applications/editor.desktop"_s, editor);
        m_folder->write(u"system/applications/painter.desktop"_s, program("Painter"));
        m_folder->write(u"system/applications/other.desktop"_s, program("Other", "StartupWMClass=Painter\n"));
        m_folder->write(u"system/applications/player.desktop"_s, program("Player"));
        m_folder->write(u"system/applications/org.example.Reader.desktop"_s, program("Reader"));
        m_folder->write(u"system/applications/kde/mail.desktop"_s, program("Mail"));
        m_folder->write(u"system/applications/removed.desktop"_s, program("Removed"));
        m_folder->write(u"user/applications/removed.desktop"_s, program("Removed", "Hidden=true\n"));
        const DesktopEntries entries({ path(u"user"_s), path(u"system"_s) }, u"C"_s);
        entries.waitUntilRead();

        const auto entry = entries.byWindowClass(windowClass);
        QCOMPARE(entry ? entry->id : QString(), id);
    }

    void usersFileStandsBeforeTheSystems()
    {
        m_folder->write(u"user/applications/a.desktop"_s, program("Mine"));
        m_folder->write(u"system/applications/a.desktop"_s, program("Theirs"));
        const DesktopEntries entries({ path(u"user"_s), path(u"system"_s) }, u"C"_s);
        entries.waitUntilRead();
        QCOMPARE(entries.byId(u"a.desktop"_s).value_or(DesktopEntry()).name, u"Mine"_s);
    }

    void installedLaterIsFoundWithoutBeingAskedFor()
    {
        m_folder->write(u"system/applications/a.desktop"_s, program("A"));
        const DesktopEntries entries({ path(u"user"_s), path(u"system"_s) }, u"C"_s);
        entries.waitUntilRead();
        QVERIFY(!entries.byId(u"b"_s));
        m_folder->write(u"user/applications/b.desktop"_s, program("B"));
        QTRY_VERIFY(entries.byId(u"b"_s));
    }

    void init() { m_folder = std::make_unique<TestFolder>(); }

private:
    [[nodiscard]] QString path(const QString& relative) const { return m_folder->filePath(relative); }

    std::unique_ptr<TestFolder> m_folder;
};

QTEST_GUILESS_MAIN(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
