#include "files/PrivateFiles.h"

#include "preferences/L10n.h"
#include "support/HistoryFixture.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

mode_t mode(const QString& path)
{
    struct stat status { };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
}

/// The work, what it asks for, and what is to be saved of that.
void settle(HistoryFixture& fixture)
{
    fixture.queues.runAll();
    fixture.time.advance(1s);
    fixture.queues.runAll();
}

} // namespace

/// The history on a real disk, and what can happen to it there.
class PrivateFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsWithWhateverLiesThere_data()
    {
        const Rows<QByteArray> row;
        row("nothing", {});
        row("truncated", "[{\"id\":");
        row("a folder", "folder");
        row("a pipe", "pipe");
        row("a link", "link");
    }
    void startsWithWhateverLiesThere()
    {
        const auto [index] = Rows<QByteArray>::current();
        HistoryFixture fixture;
        fixture.store.reset();
        const auto path = fixture.path(u"index.json"_s);
        const auto theirs = fixture.disk.filePath(u"theirs"_s);
        writeFile(theirs, "theirs");
        if (index == "folder")
            QDir().mkpath(path);
        else if (index == "pipe")
            ::mkfifo(QFile::encodeName(path).constData(), 0600);
        else if (index == "link")
            QVERIFY(QFile::link(theirs, path));
        else if (!index.isEmpty())
            writeFile(path, index);
        const auto image = fixture.path(u"images/0E8E3D3B-5A39-4B6E-8A3C-0B8F8B9B7C1D.png"_s);
        writeFile(image, "x");
        const auto unfinished = fixture.path(u"index.json.AbCdEf"_s);
        writeFile(unfinished, "x");
        const auto maskBefore = ::umask(0777);
        fixture.restart();
        QVERIFY(fixture.store->isEmpty());
        QCOMPARE(fixture.store->notice().isEmpty(), index.isEmpty());
        for (const auto* const text : { "new", "newer" }) {
            fixture.store->addText(QString::fromLatin1(text), {});
            settle(fixture);
            fixture.restart();
            fixture.queues.runAll();
        }
        ::umask(maskBefore);
        QCOMPARE(fixture.store->items().size(), 2);
        QVERIFY(fixture.store->notice().isEmpty());
        QCOMPARE(mode(path), 0600U);
        QVERIFY(!QFile::exists(unfinished));
        // What cannot be read may still name it, and stays under another name.
        QCOMPARE(QFile::exists(image), !index.isEmpty());
        const auto kept = fixture.path(u"index.unreadable.json"_s);
        QCOMPARE(QFile::exists(kept), !index.isEmpty());
        QCOMPARE(readFile(theirs), "theirs");
        if (index.startsWith('[')) {
            writeFile(path, "[another]");
            fixture.restart();
            fixture.store->addText(u"newest"_s, {});
            settle(fixture);
            QCOMPARE(readFile(kept), index);
            QCOMPARE(readFile(fixture.path(u"index.unreadable-2.json"_s)), "[another]");
        }
    }

    void keepsItsImagesUnderAnyNameOfItsFolder_data()
    {
        const Rows<QString> row;
        for (const auto* const change : { "linked", "moved", "copied", "named in full" })
            row(change, QString::fromLatin1(change));
    }
    void keepsItsImagesUnderAnyNameOfItsFolder()
    {
        const auto [change] = Rows<QString>::current();
        HistoryFixture fixture;
        const auto old = fixture.disk.filePath(u"old"_s);
        const auto other = fixture.disk.filePath(u"new"_s);
        const auto start = [&fixture](const QString& home) {
            fixture.store.reset();
            fixture.locations.folder = home;
            fixture.restart();
            settle(fixture);
        };
        if (change == "named in full"_L1) {
            QDir().mkpath(old);
            QVERIFY(QFile::link(old, other));
        }
        start(change == "named in full"_L1 ? other : old);
        for (const auto* const data : { "\x89PNG 1", "\x89PNG 2", "\x89PNG 3" }) {
            fixture.store->addImage(data, {});
            settle(fixture);
        }
        const auto copied = *fixture.store->items().last().imagePath;
        const auto elsewhere = fixture.disk.filePath(u"text"_s);
        fixture.store->addFiles({ QUrl::fromLocalFile(copied), QUrl::fromLocalFile(elsewhere) }, {});
        fixture.store->remove(fixture.store->items().last().id);
        fixture.store->togglePin(fixture.store->items().last().id);
        const auto before = fixture.store->items();
        fixture.store.reset();
        if (change == "linked"_L1)
            QVERIFY(QFile::link(old, other));
        else if (change == "moved"_L1)
            QVERIFY(QDir().rename(old, other));
        else if (change == "copied"_L1)
            std::filesystem::copy(
                old.toStdString(), other.toStdString(), std::filesystem::copy_options::recursive);
        start(change == "named in full"_L1 ? old : other);
        QCOMPARE(fixture.store->items().size(), 3);
        const auto folder = fixture.path(u"images"_s);
        QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 3);
        for (const auto& item : fixture.store->imageItems()) {
            QVERIFY(item.imagePath->startsWith(folder));
            QVERIFY(QFile::exists(*item.imagePath));
        }
        // Under its former name it is still the same image.
        fixture.store->addFiles({ QUrl::fromLocalFile(*before.last().imagePath) }, {});
        QCOMPARE(fixture.store->items().first().id, before.last().id);
        fixture.store->remove(before.last().id);
        settle(fixture);
        QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 2);
    }

    void saysWhatItCannotWrite_data()
    {
        const Rows<QString> row;
        for (const auto* const place : { "no images folder", "images of somebody else",
                 "a history of somebody else", "read-only index", "no home" })
            row(place, QString::fromLatin1(place));
    }
    void saysWhatItCannotWrite()
    {
        const auto [place] = Rows<QString>::current();
        const TestFolder foreign;
        foreign.write(u"theirs.png"_s, "x", QFile::ReadOther);
        // Somebody else's for root, too; for everybody else the root of all is.
        const auto isRoot = ::geteuid() == 0;
        if (isRoot)
            QCOMPARE(::chown(QFile::encodeName(foreign.path()).constData(), 65534, 65534), 0);
        const auto theirs = isRoot ? foreign.path() : u"/"_s;
        const auto modeBefore = mode(theirs);

        HistoryFixture fixture;
        fixture.store.reset();
        const auto index = fixture.path(u"index.json"_s);
        const auto images = fixture.path(u"images"_s);
        if (place == "no home"_L1) {
            fixture.locations.folder = u"/proc/nobody"_s;
        } else if (place == "read-only index"_L1) {
            writeFile(index, "[]");
            ::chmod(QFile::encodeName(index).constData(), 0400);
        } else if (place == "a history of somebody else"_L1) {
            QVERIFY(QDir(fixture.path({})).removeRecursively());
            QVERIFY(QFile::link(theirs, QDir::cleanPath(fixture.path({}))));
        } else {
            QVERIFY(QDir(images).removeRecursively());
            if (place == "no images folder"_L1)
                writeFile(images, "in the way");
            else
                QVERIFY(QFile::link(theirs, images));
        }
        fixture.restart();
        const auto concernsImages = place.contains("images"_L1);
        fixture.store->addImage("\x89PNG", {});
        fixture.store->addText(u"text"_s, {});
        settle(fixture);
        for (const auto language : { L10n::Ukrainian, L10n::English }) {
            L10n::setCurrent(language);
            QCOMPARE(fixture.store->notice(), L10n::text(L10n::Key::HistoryNotSaved));
        }
        QCOMPARE(mode(theirs), modeBefore);
        if (isRoot)
            QCOMPARE(QDir(theirs).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
        QCOMPARE(mode(foreign.filePath(u"theirs.png"_s)) & 04U, 04U);
        if (place == "read-only index"_L1) {
            QCOMPARE(readFile(index), "[]");
            ::chmod(QFile::encodeName(index).constData(), 0600);
            fixture.time.advance(10s);
            fixture.queues.runAll();
            QVERIFY(fixture.store->notice().isEmpty());
            fixture.restart();
            QCOMPARE(fixture.store->items().size(), 2);
        } else {
            QCOMPARE(QFile::exists(index), concernsImages);
        }
    }
};

QTEST_GUILESS_MAIN(PrivateFilesTest)
#include "PrivateFilesTest.moc"
