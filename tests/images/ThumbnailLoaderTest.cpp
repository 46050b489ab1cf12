#include "images/ThumbnailLoader.h"

#include "clipboard/ThumbnailFile.h"
#include "images/ImageCodec.h"
#include "style/Picture.h"
#include "support/ManualQueues.h"
#include "support/Pictures.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QtEndian>

#include <array>
#include <thread>

namespace {

/// `setUp` is called with the writer before it writes.
QByteArray encoded(
    const QImage& image, const QByteArray& format, const std::function<void(QImageWriter&)>& setUp)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QBuffer::WriteOnly);
    QImageWriter writer(&buffer, format);
    setUp(writer);
    writer.write(image);
    return data;
}

QByteArray pngClaiming(quint32 width, quint32 height)
{
    auto png = encodedPicture({ 1, 1 });
    qToBigEndian(width, png.data() + 16);
    qToBigEndian(height, png.data() + 20);
    return png;
}

QByteArray bmpClaiming(qint32 width, qint32 height)
{
    auto bmp = encodedPicture({ 1, 1 }, "bmp");
    qToLittleEndian(width, bmp.data() + 18);
    qToLittleEndian(height, bmp.data() + 22);
    return bmp;
}

} // namespace

/// Pictures from bytes to the screen.
class ThumbnailLoaderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_disk.isValid()); }

    void thumbnailFitsAndIsNeverEnlarged_data()
    {
        const Rows<QByteArray, int, QSize> row;
        const auto large = encodedPicture({ 4000, 3000 });
        const auto turn
            = [](QImageWriter& writer) { writer.setTransformation(QImageIOHandler::TransformationRotate90); };
        row("small", large, 200, QSize(200, 150));
        row("preview", large, 1600, QSize(1600, 1200));
        row("smaller already", encodedPicture({ 30, 20 }, "bmp"), 200, QSize(30, 20));
        row("sideways", encoded(QImage::fromData(encodedPicture({ 400, 300 })), "jpeg", turn), 200,
            QSize(150, 200));
        row("a thread", encodedPicture({ 4000, 2 }), 200, QSize(200, 1));
        row("webp", encodedPicture({ 100, 300 }, "webp"), 200, QSize(67, 200));
        row("no pixels asked for", large, 0, QSize(0, 0));
        // With the checksum of such a header, or the reader would not even believe it.
        auto huge = pngClaiming(30'000, 30'000);
        qToBigEndian(0xe9456fedU, huge.data() + 29);
        row("claims too much", huge, 200, QSize(0, 0));
        row("drawing", "<svg xmlns='http://www.w3.org/2000/svg'/>", 200, QSize(0, 0));
        row("nothing", {}, 200, QSize(0, 0));
    }
    void thumbnailFitsAndIsNeverEnlarged()
    {
        const auto [image, maxPixel, size] = Rows<QByteArray, int, QSize>::current();
        QCOMPARE(imagecodec::thumbnail(image, maxPixel).size(), size);
    }

    void aThumbnailLooksLikeItsPicture_data()
    {
        const Rows<QImage::Format, bool> row;
        row("opaque", QImage::Format_RGB32, false);
        row("transparent", QImage::Format_ARGB32, false);
        row("grey", QImage::Format_Grayscale8, false);
        row("turned", QImage::Format_RGB32, true);
    }
    void aThumbnailLooksLikeItsPicture()
    {
        const auto [format, turned] = Rows<QImage::Format, bool>::current();
        const QSize size(1000, 700);
        QLinearGradient colors({}, QPointF(size.width(), size.height()));
        colors.setColorAt(0, Qt::red);
        colors.setColorAt(0.6, QColor(20, 200, 90, 128));
        colors.setColorAt(1, Qt::blue);
        QImage painted(size, QImage::Format_ARGB32);
        painted.fill(Qt::transparent);
        QPainter(&painted).fillRect(painted.rect(), colors);
        const auto picture = painted.convertToFormat(format);
        const auto data = encoded(picture, "tiff", [turned = turned](QImageWriter& writer) {
            if (turned)
                writer.setTransformation(QImageIOHandler::TransformationRotate180);
        });
        const auto thumbnail = imagecodec::thumbnail(data, 100);
        QCOMPARE(thumbnail.size(), QSize(100, 70));
        QCOMPARE(thumbnail.hasAlphaChannel(), picture.hasAlphaChannel());
        for (const auto& place :
            { QPoint(1, 1), QPoint(40, 30), QPoint(55, 50), QPoint(60, 2), QPoint(2, 55) }) {
            const auto is = thumbnail.pixelColor(place);
            const auto from = turned ? QPoint(99, 69) - place : place;
            const auto wanted = picture.pixelColor(from * 10 + QPoint(5, 5));
            const auto far = [](int one, int other) { return std::abs(one - other) > 8; };
            QVERIFY2(!far(is.red(), wanted.red()) && !far(is.green(), wanted.green())
                    && !far(is.blue(), wanted.blue()) && !far(is.alpha(), wanted.alpha()),
                qPrintable(u"%1 instead of %2"_s.arg(is.name(), wanted.name())));
        }
    }

    void largePicturesAreDecodedOneAfterTheOther()
    {
        QImage image(3600, 2700, QImage::Format_RGB32);
        image.fill(Qt::red);
        const auto tiff = encoded(image, "tiff", [](QImageWriter& writer) { writer.setCompression(1); });
        image = {};
        const auto before = peakMemory();
        std::array<std::thread, 4> threads;
        for (auto& thread : threads)
            thread = std::thread(
                [&tiff] { QCOMPARE(imagecodec::thumbnail(tiff, 200).size(), QSize(200, 150)); });
        for (auto& thread : threads)
            thread.join();
        // Of 39 MB each; one has been there before.
        QVERIFY2(peakMemory() - before < 60, qPrintable(QString::number(peakMemory() - before)));
    }

    void noMemoryIsTakenForWhatAPictureOnlySaysItHas()
    {
        auto png = encodedPicture({ 7, 5 });
        png.insert(png.size() - 12, "\x38\x58\0\x25tEXt\0"_ba);
        auto scans = encoded(QImage(40, 30, QImage::Format_RGB32), "jpeg",
            [](QImageWriter& writer) { writer.setProgressiveScanWrite(true); });
        QCOMPARE(imagecodec::thumbnail(scans, 20).size(), QSize(20, 15));
        const auto frame = scans.indexOf("\xff\xc2"_ba);
        qToBigEndian<quint16>(10'000, scans.data() + frame + 5);
        qToBigEndian<quint16>(9'000, scans.data() + frame + 7);
        // Each colour in full, where the writer has halved two of them.
        scans[frame + 11] = '\x11';

        const auto before = peakMemory();
        QVERIFY(imagecodec::thumbnail(scans, 200).isNull());
        QVERIFY(imagecodec::thumbnail(png, 200).isNull());
        QVERIFY2(peakMemory() - before < 100, qPrintable(QString::number(peakMemory() - before)));
    }

    void bytesBecomePng()
    {
        const QByteArray stub = "\x89PNG and what not";
        QCOMPARE(imagecodec::pngData(stub), stub);
        const auto png = imagecodec::pngData(encodedPicture({ 40, 30 }, "tiff"));
        QCOMPARE(QImage::fromData(png.value(), "png").size(), QSize(40, 30));
        QCOMPARE(imagecodec::pngData(pngClaiming(10'000, 10'000)), pngClaiming(10'000, 10'000));
        QCOMPARE(imagecodec::pngData(pngClaiming(10'000, 10'001)), std::nullopt);
        QCOMPARE(imagecodec::pngData(pngClaiming(0xffffffff, 0xffffffff)), std::nullopt);
        QCOMPARE(imagecodec::pngData(bmpClaiming(30'000, 30'000)), std::nullopt);
        QCOMPARE(imagecodec::pngData(QByteArray(5000, '\0')), std::nullopt);
        QCOMPARE(imagecodec::pngData(encodedPicture({ 40, 30 }, "jpeg").first(100)), std::nullopt);
    }

    void oneLoadServesEverybodyWhoAsks()
    {
        ThumbnailLoader loader(m_queues);
        const auto file = put(u"a.png"_s);
        QList<QSize> sizes;
        const auto note = [&sizes](const QImage& image) { sizes << image.size(); };
        auto gone = std::make_unique<QObject>();
        loader.image(file, 200, this, note);
        loader.image(file, 200, gone.get(), [&sizes](const QImage&) { sizes << QSize(1, 1); });
        loader.image(file, 200, this, note);
        gone.reset();
        QCOMPARE(m_queues.waiting(), 1);
        m_queues.runAll();
        QCOMPARE(sizes, QList<QSize>(2, QSize(200, 100)));
        QVERIFY(QFile::remove(file.toLocalFile()));
        loader.image(file, 200, this, note);
        QCOMPARE(sizes.size(), 3);
        loader.image(file, 120, this, note);
        m_queues.runAll();
        QCOMPARE(sizes.last(), QSize(0, 0));
        put(u"a.png"_s);
        loader.image(file, 120, this, note);
        // Forgotten while it is being read: shown, but not kept.
        loader.forget({ file });
        m_queues.runAll();
        QCOMPARE(sizes.last(), QSize(120, 60));
        QVERIFY(loader.cached(file, 120).isNull());
        QVERIFY(loader.cached(file, 200).isNull());
    }

    void cacheKeepsWithinBothLimits()
    {
        const auto name = [](int number) { return QString::number(number); };
        ThumbnailCache cache;
        const QImage small(10, 10, QImage::Format_RGB32);
        for (auto number = 0; number < 300; ++number)
            cache.insert(name(number), 200, small);
        QVERIFY(!cache.find(name(0), 200).isNull());
        cache.insert(name(300), 200, small);
        QVERIFY(!cache.find(name(0), 200).isNull());
        QVERIFY(cache.find(name(1), 200).isNull());
        // Of these 26 have room, and the small ones are older.
        const QImage large(1600, 1260, QImage::Format_RGB32);
        for (auto number = 0; number < 27; ++number)
            cache.insert(name(number), 1600, large);
        QVERIFY(cache.find(name(0), 1600).isNull());
        QVERIFY(!cache.find(name(1), 1600).isNull());
        QVERIFY(cache.find(name(300), 200).isNull());
        cache.insert(u"too large"_s, 9000, QImage(8000, 6600, QImage::Format_RGB32));
        QVERIFY(!cache.find(name(1), 1600).isNull());
    }

    void aPictureShowsTheFileThatItIsGivenNow()
    {
        ThumbnailLoader loader(m_queues);
        ThumbnailFile::setLoader(&loader);
        ThumbnailFile file;
        Picture item;
        const auto follow = [&] { item.setProperty("image", file.property("image")); };
        connect(&file, &ThumbnailFile::imageChanged, &item, follow);
        item.setSize({ 40, 40 });
        item.setRadius(8);
        file.setSource(put(u"a.png"_s));
        QCOMPARE(drawn(item).pixelColor(20, 20), QColor(Qt::black));
        file.setSource(put(u"b.png"_s, { 20, 400 }));
        m_queues.runAll();
        QVERIFY(item.isLoaded());
        auto image = drawn(item);
        QCOMPARE(image.pixelColor(20, 20), QColor(Qt::red));
        QCOMPARE(image.pixelColor(20, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::black));
        item.setFit(true);
        image = drawn(item);
        QCOMPARE(image.pixelColor(20, 20), QColor(Qt::red));
        QCOMPARE(image.pixelColor(10, 20), QColor(Qt::black));
        file.setSource({});
        QVERIFY(!item.isLoaded());
    }

private:
    QUrl put(const QString& name, QSize size = { 400, 200 })
    {
        writeFile(m_disk.filePath(name), encodedPicture(size));
        return QUrl::fromLocalFile(m_disk.filePath(name));
    }

    static QImage drawn(Picture& item)
    {
        QImage image(40, 40, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        item.paint(&painter);
        return image;
    }

    QTemporaryDir m_disk;
    ManualQueues m_queues;
};

QTEST_MAIN(ThumbnailLoaderTest)
#include "ThumbnailLoaderTest.moc"
