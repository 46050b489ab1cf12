#include "clipboard/ClipboardIndex.h"
#include "clipboard/PasteboardCapture.h"
#include "clipboard/ScreenshotWatcher.h"
#include "files/PrivateFiles.h"
#include "images/ThumbnailLoader.h"
#include "qt/QtWorkQueues.h"
#include "support/FakePasteboard.h"
#include "support/FakeScreenshots.h"
#include "support/HistoryFixture.h"
#include "support/Pictures.h"
#include "support/Test.h"
#include "support/TestFolder.h"

namespace {

QByteArray picture(int number, const char* format)
{
    return encodedPicture({ 300 + number, 200 }, format, QColor::fromHsv(number * 7 % 360, 200, 200));
}

} // namespace

/// The history with all its work on real threads: no thread may touch what another one has.
class RealQueuesTest : public QObject {
    Q_OBJECT

    static constexpr int count = 30;

private Q_SLOTS:
    void worksOnManyThingsAtOnce()
    {
        HistoryFixture fixture;
        fixture.store.reset();
        QtWorkQueues queues;
        QStringList kept;
        {
            ClipboardStore store(fixture.settings, fixture.locations, fixture.time, fixture.time, queues);
            PasteboardCapture capture(store, queues);
            ThumbnailLoader loader(queues);
            int loaded = 0;
            connect(&store, &ClipboardStore::imagesDropped, &loader, &ThumbnailLoader::forget);
            store.onNewItem = [&](const ClipboardItem& item) {
                // Each save takes a copy of all entries along, while this thread goes on with its own.
                fixture.time.advance(1s);
                store.togglePin(item.id);
                if (!item.imagePath)
                    return;
                for (const auto size : { 60, 200 })
                    loader.image(QUrl::fromLocalFile(*item.imagePath), size, this,
                        [&](const QImage& image) { loaded += image.isNull() ? 0 : 1; });
            };
            for (int number = 0; number < count; ++number) {
                FakePasteboard pasteboard;
                pasteboard.copy(
                    { { { pasteboardtype::bmp.toString(), picture(number, "BMP") } }, {}, {}, {} });
                capture.capture(pasteboard, u"Малюнки"_s);
                // Long enough for its hash to be made elsewhere.
                store.addText(QString::number(number) + QString(300'000, u'x'), {});
                store.addImage(picture(count + number, "PNG"), {});
            }
            QTRY_COMPARE(store.items().size(), 3 * count);
            QTRY_COMPARE(loaded, 2 * 2 * count);
            // Half of the images go while they are read again.
            loader.clear();
            const auto images = store.imageItems();
            for (qsizetype i = 0; i < images.size(); ++i) {
                loader.image(QUrl::fromLocalFile(*images[i].imagePath), 200, this, [](const QImage&) {});
                if (i % 2 == 0)
                    store.remove(images[i].id);
            }
            for (const auto& item : store.imageItems())
                kept << QFileInfo(*item.imagePath).fileName();
        }
        kept.sort();
        QCOMPARE(kept.size(), qsizetype(count));
        QCOMPARE(QDir(fixture.path(u"images"_s)).entryList(QDir::Files, QDir::Name), kept);
        const auto index = privatefiles::read(fixture.path(u"index.json"_s), clipboardindex::maxSize);
        QVERIFY(index);
        QCOMPARE(clipboardindex::decode(*index).value().size(), qsizetype(2 * count));
    }

    void takesScreenshotsWhileTheyAreWritten()
    {
        HistoryFixture fixture;
        QtWorkQueues queues;
        QTemporaryDir shots;
        FakeFolderEvents events;
        FakeScreenshotFolder folder;
        folder.folder = shots.path();
        ScreenshotWatcher watcher(*fixture.store, events, folder, fixture.time, fixture.time, queues);
        watcher.start();
        QTRY_COMPARE(events.folders(), QStringList { shots.path() });
        // The first ones may have been there before the watcher has looked.
        for (int number = 0; fixture.store->items().size() < count && number < 50 * count; ++number) {
            writeFile(shots.filePath(u"Screenshot %1.png"_s.arg(number)), "x");
            events.changed();
            fixture.time.advance(1s);
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(fixture.store->items().size() >= count);
    }
};

QTEST_GUILESS_MAIN(RealQueuesTest)
#include "RealQueuesTest.moc"
