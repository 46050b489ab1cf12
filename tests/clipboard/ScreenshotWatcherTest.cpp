#include "clipboard/ScreenshotWatcher.h"

#include "support/FakeScreenshots.h"
#include "support/HistoryFixture.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QTimeZone>

namespace {

struct Fixture : HistoryFixture {
    QTemporaryDir pictures;
    FakeFolderEvents events;
    FakeScreenshotFolder folder;
    std::unique_ptr<ScreenshotWatcher> watcher;

    Fixture()
    {
        folder.folder = pictures.path();
        // Before any file of the test was written.
        time.setWallTime(QDateTime({ 2020, 1, 1 }, {}, QTimeZone::utc()));
        watcher = std::make_unique<ScreenshotWatcher>(*store, events, folder, time, time, queues);
    }

    void save(const QString& name) const { writeFile(pictures.filePath(name), {}); }

    void start()
    {
        watcher->start();
        queues.runAll();
    }

    /// The folder tells of a change, and the scan that follows it has ended.
    void settle()
    {
        events.changed();
        time.advance(800ms);
        queues.runAll();
    }

    [[nodiscard]] QStringList names() const
    {
        QStringList names;
        for (const auto& item : store->items())
            names.prepend(item.summary().value_or(QString()));
        return names;
    }
};

} // namespace

class ScreenshotWatcherTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void takesWhatIsAScreenshot()
    {
        const struct {
            QString name;
            bool isMarked;
            bool isTaken;
        } rows[] = {
            { u"Screenshot 2026-03-01 at 09.41.07.png"_s, false, true },
            { u"Screen Shot 1.JPG"_s, false, true },
            { u"Знімок екрана з 2026-03-01.png"_s, false, true },
            { u"Capture d’écran du 2026-03-01.png"_s, false, true },
            { u"Captura desde 2026-03-01.png"_s, true, true },
            { u"Captura desde 2026-03-01.png"_s, false, false },
            { u"screenshot.png"_s, false, false },
            { u"my Screenshot.png"_s, false, false },
            { u"notes.txt"_s, true, false },
            { u"Screenshot.mov"_s, false, false },
            { u".Screenshot.png"_s, true, false },
        };
        for (const auto& row : rows) {
            Fixture f;
            f.start();
            const auto path = f.pictures.filePath(row.name);
            if (row.isMarked)
                f.folder.marked << path;
            f.save(row.name);
            f.settle();
            QVERIFY2(f.store->items().size() == (row.isTaken ? 1 : 0), qPrintable(row.name));
            for (const auto& item : f.store->items())
                QVERIFY(item.isScreenshot && item.imagePath == path);
            // Whatever it was, it is not looked at again.
            f.folder.marked << path;
            f.store->clear();
            f.settle();
            QVERIFY(f.store->isEmpty());
        }
    }

    void scansOnceAfterTheLastChangeOrAfterFiveSeconds()
    {
        Fixture f;
        f.start();
        f.save(u"Screenshot 1.png"_s);
        for (auto number = 0; number < 3; ++number) {
            f.events.changed();
            f.time.advance(799ms);
            QCOMPARE(f.queues.waiting(), 0);
        }
        f.time.advance(1ms);
        QCOMPARE(f.queues.waiting(), 1);
        QVERIFY(f.store->isEmpty());
        f.queues.runAll();
        // The history writes what it has got.
        f.time.advance(1s);
        f.queues.runAll();
        f.save(u"Screenshot 2.png"_s);
        for (auto number = 0; number < 10; ++number) {
            QCOMPARE(f.queues.waiting(), 0);
            f.events.changed();
            f.time.advance(500ms);
        }
        QCOMPARE(f.queues.waiting(), 1);
        f.queues.runAll();
        QCOMPARE(f.names(), (QStringList { u"Screenshot 1.png"_s, u"Screenshot 2.png"_s }));
    }

    void watchesAFolderFromTheMomentItIsMade()
    {
        Fixture f;
        const auto shots = f.pictures.filePath(u"a/Screenshots"_s);
        f.folder.set = QStringList { shots, f.pictures.path() };
        f.start();
        QCOMPARE(f.events.folders(), QStringList { f.pictures.path() });
        const auto make = [&f] {
            QVERIFY(QDir(f.pictures.path()).mkpath(u"a/Screenshots"_s));
            f.save(u"a/Screenshots/Screenshot 1.png"_s);
            f.save(u"a/Screenshots/Screenshot 0.png"_s);
            QFile moved(f.pictures.filePath(u"a/Screenshots/Screenshot 0.png"_s));
            QVERIFY(moved.open(QFile::ReadWrite));
            QVERIFY(moved.setFileTime(
                QDateTime({ 2019, 1, 1 }, {}, QTimeZone::utc()), QFile::FileModificationTime));
        };
        make();
        f.settle();
        QCOMPARE(f.names(), QStringList { u"Screenshot 1.png"_s });
        QCOMPARE(f.events.folders(), (QStringList { f.pictures.path(), shots }));

        // It goes, and comes again before anybody has looked.
        f.store->clear();
        QVERIFY(QDir(f.pictures.filePath(u"a"_s)).removeRecursively());
        f.settle();
        QCOMPARE(f.events.folders(), QStringList { f.pictures.path() });
        make();
        f.settle();
        QCOMPARE(f.names(), QStringList { u"Screenshot 1.png"_s });
        f.events.replaced = true;
        f.events.changed();
        f.time.advance(800ms);
        f.events.replaced = false;
        QCOMPARE(f.events.folders(), QStringList());
        f.queues.runAll();
        QCOMPARE(f.events.folders(), (QStringList { f.pictures.path(), shots }));
    }

    void leavesWhatWasThereBefore()
    {
        Fixture f;
        f.save(u"Screenshot 1.png"_s);
        f.start();
        f.save(u"Screenshot 3.png"_s);
        f.save(u"Screenshot 2.png"_s);
        QVERIFY(QDir(f.pictures.path()).mkdir(u"Screenshot 4.png"_s));
        f.settle();
        QCOMPARE(f.names(), (QStringList { u"Screenshot 2.png"_s, u"Screenshot 3.png"_s }));

        // One that goes and comes back is new, and the entry that it has moves to the top.
        QVERIFY(QFile::remove(f.pictures.filePath(u"Screenshot 2.png"_s)));
        f.settle();
        f.save(u"Screenshot 2.png"_s);
        f.settle();
        QCOMPARE(f.names(), (QStringList { u"Screenshot 3.png"_s, u"Screenshot 2.png"_s }));
    }

    void waitsForAFileThatIsBeingWritten()
    {
        Fixture f;
        f.start();
        f.save(u"Screenshot 1.png"_s);
        f.save(u"Screenshot 2.png"_s);
        f.events.unfinished = QStringList { u"Screenshot 2.png"_s };
        f.settle();
        QCOMPARE(f.names(), QStringList { u"Screenshot 1.png"_s });
        f.events.unfinished.clear();
        f.settle();
        QCOMPARE(f.names(), (QStringList { u"Screenshot 1.png"_s, u"Screenshot 2.png"_s }));
    }

    void stopsAndBeginsAfresh()
    {
        Fixture f;
        f.events.canWatch = false;
        f.start();
        f.events.canWatch = true;
        f.start();
        f.save(u"Screenshot 1.png"_s);
        f.events.changed();
        f.watcher->stop();
        QVERIFY(f.events.watched.empty());
        // What was on its way arrives.
        f.time.advance(800ms);
        f.queues.runAll();
        QCOMPARE(f.names(), QStringList { u"Screenshot 1.png"_s });

        f.save(u"Screenshot 2.png"_s);
        const QTemporaryDir other;
        f.folder.set = QStringList { other.path() };
        f.start();
        QCOMPARE(f.events.folders(), QStringList { other.path() });
        f.folder.set.clear();
        f.start();
        QCOMPARE(f.events.folders(), QStringList { other.path() });
        f.settle();
        QCOMPARE(f.names(), QStringList { u"Screenshot 1.png"_s });
    }

    void outlivesItsFolderAndItsScan()
    {
        Fixture f;
        f.start();
        QVERIFY(QDir(f.pictures.path()).removeRecursively());
        f.settle();
        QVERIFY(f.store->isEmpty());
        QVERIFY(QDir().mkdir(f.pictures.path()));
        f.save(u"Screenshot 1.png"_s);
        f.events.changed();
        f.time.advance(800ms);
        f.watcher.reset();
        QCOMPARE(f.queues.waiting(), 0);
        QVERIFY(f.store->isEmpty());
    }

    void findsTheFolders()
    {
        Fixture f;
        const auto directories = [&f](const QStringList& set) {
            f.folder.set = set;
            return ScreenshotWatcher::directories(f.folder);
        };
        QCOMPARE(directories({ u"."_s, u"/no/such/"_s, u"/etc/passwd"_s }),
            (QStringList { u"/no/such"_s, f.pictures.path() }));
        QCOMPARE(
            directories({ u"~"_s, u"/usr/"_s, u"/usr"_s }), (QStringList { QDir::homePath(), u"/usr"_s }));
    }
};

QTEST_GUILESS_MAIN(ScreenshotWatcherTest)
#include "ScreenshotWatcherTest.moc"
