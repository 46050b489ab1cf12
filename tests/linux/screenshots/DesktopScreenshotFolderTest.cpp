#include "linux/screenshots/DesktopScreenshotFolder.h"

#include "linux/screenshots/ScreenshotSettings.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QProcess>
#include <QtEndian>

#include <sys/stat.h>

namespace {

/// `claimed` is the length that the chunk says it has.
QByteArray chunk(const QByteArray& type, const QByteArray& content, quint32 claimed)
{
    QByteArray length(4, '\0');
    qToBigEndian(claimed, length.data());
    return length + type + content + "CRC.";
}

QByteArray chunk(const QByteArray& type, const QByteArray& content)
{
    return chunk(type, content, quint32(content.size()));
}

const auto start = "\x89PNG\r\n\x1a\n"_ba + chunk("IHDR", QByteArray(13, '\0'));
const auto picture = chunk("IDAT", "picture") + chunk("IEND", {});
const auto software = "Software\0gnome-screenshot"_ba;
const auto international = "Software\0\0\0uk\0\xd0\x9f\0Spectacle"_ba;

} // namespace

class DesktopScreenshotFolderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const auto schemas = m_system.filePath(u"schemas"_s);
        QVERIFY(QDir().mkpath(schemas));
        writeFile(schemas + u"/tool.gschema.xml"_s,
            "<schemalist><schema id='org.gnome.gnome-screenshot' path='/org/gnome/gnome-screenshot/'>"
            "<key name='auto-save-directory' type='s'><default>''</default></key></schema></schemalist>");
        QCOMPARE(QProcess::execute(u"glib-compile-schemas"_s, { schemas }), 0);
        qputenv("GSETTINGS_SCHEMA_DIR", QFile::encodeName(schemas));
        qputenv("GSETTINGS_BACKEND", "keyfile");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_system.filePath(u"config"_s)));
        QVERIFY(QDir().mkpath(m_system.filePath(u"config/glib-2.0/settings"_s)));
    }

    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", QFile::encodeName(m_home->path()));
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    }

    void knowsWhereTheToolsSave()
    {
        const QDir home(m_home->path());
        const auto config = m_system.filePath(u"config/"_s);
        writeFile(config + u"user-dirs.dirs"_s,
            "XDG_PICTURES_DIR=\"$HOME/Зображення\"\nXDG_DESKTOP_DIR=\"$HOME/Стіл\"\n");
        const auto pictures = home.filePath(u"Зображення"_s);
        // Nothing is set: all save to the pictures or to a folder in them, which need not be there yet.
        const auto untold = m_folder.settings();
        QVERIFY(untold.contains(pictures));
        QVERIFY(untold.contains(pictures + u"/Screenshots"_s));
        QVERIFY(untold.contains(pictures + u"/Знімки екрана"_s));
        QCOMPARE(m_folder.defaultFolder(), home.filePath(u"Стіл"_s));
        QVERIFY(!untold.contains(m_folder.defaultFolder()));
        QVERIFY(home.mkdir(u"Стіл"_s));
        QVERIFY(m_folder.settings().contains(m_folder.defaultFolder()));

        writeFile(config + u"spectaclerc"_s, "[ImageSave]\nimageSaveLocation=file:///kde/\n");
        writeFile(config + u"flameshot/flameshot.ini"_s, "[General]\nsavePath=/flame/\\x457\n");
        QCOMPARE(m_folder.settings().first(2), (QStringList { u"/kde/"_s, u"/flame/ї"_s }));
        writeFile(config + u"glib-2.0/settings/keyfile"_s,
            "[org/gnome/gnome-screenshot]\nauto-save-directory='file:///gnome/%D1%97'\n");
        QTRY_COMPARE(m_folder.settings().first(), u"/gnome/ї"_s);
    }

    void readsSpectaclesFile_data()
    {
        const Rows<QByteArray, QString> row;
        row("new", "[General]\nx=1\n[ImageSave]\nimageSaveLocation=file:///a%20b/\n", u"/a b/"_s);
        row("older", "[Save]\ndefaultSaveLocation=file:///old\n", u"/old"_s);
        row("new above old", "[Save]\ndefaultSaveLocation=/old\n[ImageSave]\nimageSaveLocation=/new",
            u"/new"_s);
        row("in another group", "[VideoSave]\nimageSaveLocation=/a\n", {});
        row("home", "[ImageSave]\nimageSaveLocation[$e]=file:$HOME/p\n", u"/home/o/p"_s);
        row("fixed", "[ImageSave]\nimageSaveLocation[$i]=/fixed\n", u"/fixed"_s);
        row("escaped", "[ImageSave]\nimageSaveLocation=/a\\sb\\\\\n", u"/a b\\"_s);
        row("broken", "[ImageSave\n=\nimageSaveLocation\n[]\n[ImageSave]\nimageSaveLocation=\n", {});
    }
    void readsSpectaclesFile()
    {
        const auto [text, path] = Rows<QByteArray, QString>::current();
        qputenv("HOME", "/home/o");
        QCOMPARE(screenshotsettings::spectacle(text), path);
    }

    void knowsAScreenCapture_data()
    {
        const Rows<QString, QByteArray, bool> file;
        const auto row = [&file](const char* what, const QByteArray& content, bool known) {
            file(what, u"picture.png"_s, content, known);
        };
        row("a tool's text", start + chunk("tEXt", software) + picture, true);
        row("international text", start + chunk("iTXt", international) + picture, true);
        row("behind other chunks", start + chunk("pHYs", "123456789") + chunk("tEXt", software), true);
        row("another program", start + chunk("tEXt", "Software\0GIMP"_ba) + picture, false);
        row("behind the picture", start + picture + chunk("tEXt", software), false);
        row("compressed", start + chunk("iTXt", "Software\0\1\0\0\0spectacle"_ba) + picture, false);
        row("cut short", (start + chunk("tEXt", software)).chopped(12), false);
        row("claims too much", start + chunk("tEXt", software, 0xffff'fff0U) + picture, false);
        row("claims what is not there", start + chunk("zTXt", software, 0x7fff'ffffU) + picture, false);
        row("too long to be read", start + chunk("tEXt", software + QByteArray(5000, 'x')) + picture, false);
        QByteArray many = start;
        for (auto number = 0; number < 100; ++number)
            many += chunk("tEXt", {});
        row("hidden behind a hundred", many + chunk("tEXt", software), false);
        row("no PNG", "GIF89a" + chunk("tEXt", software), false);
        file("grim", u"20261121_03h10m42s_grim.png"_s, "", true);
        file("scrot", u"2026-11-21-030956_1000x700_scrot.png"_s, "", true);
        file("Flameshot", u"2026-11-21_03-09.png"_s, "", true);
        file("Flameshot again", u"2026-11-21_03-09_1.png"_s, "", true);
        file("a day", u"2026-11-21.png"_s, start + picture, false);
        file("pilgrim", u"pilgrim.png"_s, start + picture, false);
    }
    void knowsAScreenCapture()
    {
        const auto [name, content, known] = Rows<QString, QByteArray, bool>::current();
        writeFile(m_home->filePath(name), content);
        QCOMPARE(m_folder.isScreenCapture(m_home->filePath(name)), known);
    }

    void waitsForNoPipe()
    {
        const auto path = m_home->filePath(u"pipe.png"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(!m_folder.isScreenCapture(path));
        QVERIFY(!m_folder.isScreenCapture(m_home->filePath(u"gone.png"_s)));
    }

private:
    QTemporaryDir m_system;
    std::unique_ptr<QTemporaryDir> m_home;
    DesktopScreenshotFolder m_folder;
};

QTEST_GUILESS_MAIN(DesktopScreenshotFolderTest)
#include "DesktopScreenshotFolderTest.moc"
