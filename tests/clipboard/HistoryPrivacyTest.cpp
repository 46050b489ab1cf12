#include "clipboard/ClipboardMonitor.h"
#include "clipboard/PasteboardCapture.h"
#include "images/ThumbnailLoader.h"
#include "support/FakeDesktop.h"
#include "support/FakePasteboard.h"
#include "support/FileCalls.h"
#include "support/HistoryFixture.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QBuffer>
#include <QDirIterator>
#include <QLoggingCategory>

#include <cerrno>

namespace {

/// Stands in everything that is copied.
const auto secret = u"Sesame"_s;

QByteArray png(Qt::GlobalColor colour)
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(colour);
    image.setText(secret, secret);
    QByteArray data;
    QBuffer buffer(&data);
    image.save(&buffer, "png");
    return data;
}

/// Every line that the program or a library writes while this stands.
class Log {
public:
    Log()
    {
        lines().clear();
        QLoggingCategory::setFilterRules(u"*=true"_s);
        m_before
            = qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
                  lines() << QLatin1StringView(context.category) + u' ' + text;
              });
    }
    ~Log()
    {
        qInstallMessageHandler(m_before);
        QLoggingCategory::setFilterRules({});
    }

    static QStringList& lines()
    {
        static QStringList lines;
        return lines;
    }

private:
    QtMessageHandler m_before;
};

struct Fixture : HistoryFixture {
    FakePasteboard pasteboard;
    FakeApplications applications;
    PasteboardCapture capture { *store, queues };
    ClipboardMonitor monitor { capture, pasteboard, applications, time };
    ThumbnailLoader thumbnails { queues };

    Fixture()
    {
        QObject::connect(store.get(), &ClipboardStore::imagesDropped, &thumbnails, &ThumbnailLoader::forget);
        applications.front = RunningApplication { secret + " - window"_L1, {}, 0 };
        monitor.start();
    }

    void settle()
    {
        for (auto round = 0; round < 2; ++round) {
            queues.runAll();
            time.advance(1s);
        }
        queues.runAll();
    }

    void copyEverything()
    {
        pasteboard.copy({ .data = {}, .string = secret, .urls = {}, .marks = {} });
        pasteboard.copy(
            { .data = {}, .string = u"https://example.org/"_s + secret, .urls = {}, .marks = {} });
        pasteboard.copy({ .data = {}, .string = secret.repeated(100'000), .urls = {}, .marks = {} });
        const auto image = [this](QStringView type, const QByteArray& data) {
            pasteboard.copy({ .data = { { type.toString(), data } }, .string = {}, .urls = {}, .marks = {} });
        };
        image(pasteboardtype::png, png(Qt::red));
        image(pasteboardtype::png, png(Qt::blue).first(100));
        image(pasteboardtype::tiff, "II*" + QByteArray(30, '\xff') + secret.toUtf8());
        for (const auto* const name : { u"png", u"jpg", u"gif", u"tiff", u"webp", u"bmp", u"heic", u"txt" })
            pasteboard.copy(
                { .data = {}, .string = {}, .urls = { foreign(QString::fromUtf16(name)) }, .marks = {} });
    }

    /// A file that is not what its name says.
    [[nodiscard]] QUrl foreign(const QString& extension) const
    {
        const QString path = disk.filePath(secret + u'.' + extension);
        writeFile(path, (extension == "gif"_L1 ? "GIF89a"_ba : "\xff\xd8\xff\xe0"_ba) + secret.toUtf8());
        return QUrl::fromLocalFile(path);
    }

    void showEverything()
    {
        for (const auto& item : store->items()) {
            monitor.write(item);
            if (item.imagePath) {
                for (const auto size : { 200, 1600 })
                    thumbnails.image(
                        QUrl::fromLocalFile(*item.imagePath), size, store.get(), [](const QImage&) {});
            }
        }
        settle();
    }
};

} // namespace

class HistoryPrivacyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void logsNothingThatWasCopiedAndLeavesNothingOfWhatWasRemoved()
    {
        const Log log;
        qDebug("heard");
        QCOMPARE(Log::lines().size(), 1);
        Fixture f;
        f.copyEverything();
        f.settle();
        QVERIFY(f.store->items().size() > 10);
        const auto images = f.store->imageItems();
        f.showEverything();
        const auto isKept = [&f](const ClipboardItem& item) {
            const auto file = QUrl::fromLocalFile(*item.imagePath);
            return !f.thumbnails.cached(file, 200).isNull() || !f.thumbnails.cached(file, 1600).isNull();
        };
        QVERIFY(std::ranges::any_of(images, isKept));
        QVERIFY(!filesWithSecret(f.path({})).isEmpty());
        f.store->clear();
        f.settle();
        QVERIFY(std::ranges::none_of(images, isKept));
        QCOMPARE(filesWithSecret(f.path({})), QStringList());
        {
            const FileCalls full(f.path({}), [](const char*) { return ENOSPC; });
            f.copyEverything();
            f.settle();
            f.showEverything();
        }
        writeFile(f.path(u"index.json"_s), "[{\"text\": \"" + secret.toUtf8());
        ClipboardStore(f.settings, f.locations, f.time, f.time, f.queues).addText(secret, {});
        f.settle();
        for (const auto& line : std::as_const(Log::lines()))
            QVERIFY2(!line.contains(secret, Qt::CaseInsensitive), qPrintable(line));
    }

private:
    static QStringList filesWithSecret(const QString& folder)
    {
        QStringList found;
        QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QFile::ReadOnly) || file.readAll().contains(secret.toUtf8())
                || file.fileName().endsWith(".png"_L1))
                found << file.fileName();
        }
        return found;
    }
};

QTEST_MAIN(HistoryPrivacyTest)
#include "HistoryPrivacyTest.moc"
