#include "clipboard/ClipboardMonitor.h"

#include "clipboard/PasteboardCapture.h"
#include "preferences/L10n.h"
#include "support/FakeDesktop.h"
#include "support/FakePasteboard.h"
#include "support/HistoryFixture.h"
#include "support/Pictures.h"
#include "support/Test.h"

using Kind = ClipboardItem::Kind;
using Content = FakePasteboard::Content;

namespace {

QByteArray picture(const char* format)
{
    return encodedPicture({ 4, 3 }, format);
}

struct Fixture : HistoryFixture {
    FakePasteboard pasteboard;
    FakeApplications applications;
    PasteboardCapture capture { *store, queues };
    ClipboardMonitor monitor { capture, pasteboard, applications, time };

    ClipboardItem captured(const Content& content)
    {
        pasteboard.copy(content);
        queues.runAll();
        return store->items().value(0);
    }
};

const QUrl web(u"https://example.org/a b"_s);
const QUrl file(u"file:///a/b.txt"_s);
const auto png = pasteboardtype::png.toString();
const auto tiff = pasteboardtype::tiff.toString();

} // namespace

class ClipboardMonitorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void seesEveryAnnouncedCopyAndNotWhatWasThere()
    {
        Fixture f;
        f.pasteboard.content.string = u"before"_s;
        f.monitor.start();
        f.monitor.start();
        QVERIFY(f.store->isEmpty());
        f.applications.front = RunningApplication { u"Kate"_s, {}, 0 };
        for (auto number = 0; number < 40; ++number)
            f.pasteboard.copy({ .data = {}, .string = QString::number(number), .urls = {}, .marks = {} });
        QCOMPARE(f.store->items().size(), 40);
        QCOMPARE(f.store->items().first().sourceApp, u"Kate"_s);
        QCOMPARE(f.time.pending(), 1);
    }

    void looksTwiceASecondWhereNothingIsAnnounced()
    {
        Fixture f;
        f.pasteboard.announces = false;
        f.monitor.start();
        f.pasteboard.copy({ .data = {}, .string = u"one"_s, .urls = {}, .marks = {} });
        f.pasteboard.copy({ .data = {}, .string = u"two"_s, .urls = {}, .marks = {} });
        f.time.advance(499ms);
        QVERIFY(f.store->isEmpty());
        f.time.advance(1ms);
        QCOMPARE(f.store->items().size(), 1);
        QCOMPARE(f.store->items().first().text, u"two"_s);
        QCOMPARE(f.store->items().first().sourceApp, std::nullopt);
    }

    void saysWhenItMayReadNothing()
    {
        Fixture f;
        f.pasteboard.announces = false;
        f.monitor.start();
        for (const auto access :
            { Pasteboard::Access::Denied, Pasteboard::Access::Asked, Pasteboard::Access::Granted }) {
            f.pasteboard.allowed = access;
            f.time.advance(500ms);
            QCOMPARE(f.store->notice(),
                access == Pasteboard::Access::Denied ? L10n::text(L10n::Key::CopiesNotReadable) : QString());
        }
    }

    void takesTheBestOfWhatIsOffered_data()
    {
        const Rows<Content, QString> row;
        row("text", { {}, u"text"_s, {}, {} }, u"text"_s);
        row("files before all else", { { { tiff, picture("tiff") } }, u"b.txt"_s, { web, file }, {} },
            u"b.txt"_s);
        row("image before text", { { { png, "\x89PNG" } }, u"text"_s, {}, {} }, u"image 4"_s);
        row("PNG as it is", { { { png, "\x89PNG?" }, { tiff, picture("tiff") } }, {}, {}, {} }, u"image 5"_s);
        row("empty PNG", { { { png, {} }, { tiff, picture("tiff") } }, {}, {}, {} },
            u"image %1"_s.arg(picture("png").size()));
        row("JPEG", { { { pasteboardtype::jpeg.toString(), picture("bmp") } }, {}, {}, {} },
            u"image %1"_s.arg(picture("png").size()));
        row("broken image is nothing", { { { tiff, "II*?" } }, u"text"_s, {}, {} }, {});
        row("address alone", { {}, {}, { web }, {} }, u"example.org"_s);
        row("address with text", { {}, u"text"_s, { web }, {} }, u"text"_s);
        row("nothing that is known", { {}, {}, {}, { u"x/y"_s } }, {});
        for (const auto& type : PasteboardCapture::ignoredTypes())
            row(qPrintable(type), { {}, u"secret"_s, { file }, { type } }, {});
    }
    void takesTheBestOfWhatIsOffered()
    {
        const auto [content, summary] = Rows<Content, QString>::current();
        Fixture f;
        f.monitor.start();
        const auto item = f.captured(content);
        QCOMPARE(item.kind == Kind::Image ? u"image %1"_s.arg(QFile(item.imagePath.value()).size())
                                          : item.summary().value_or(QString()),
            summary);
        QCOMPARE(f.store->items().size(), summary.isEmpty() ? 0 : 1);
        // The same content is not looked at again.
        f.pasteboard.content = { {}, u"later"_s, {}, {} };
        f.monitor.poll();
        QCOMPARE(f.store->items().size(), summary.isEmpty() ? 0 : 1);
    }

    void putsAnEntryBackWithoutCapturingIt()
    {
        Fixture f;
        f.monitor.start();
        const auto link = f.captured({ {}, u"https://example.org"_s, {}, {} });
        f.captured({ {}, {}, { file, file, web }, {} });
        const auto before = f.store->items();
        f.monitor.write(link);
        QCOMPARE(f.pasteboard.written.size(), 1);
        QCOMPARE(f.pasteboard.written.first().string, u"https://example.org"_s);
        QVERIFY(!f.pasteboard.written.first().url);
        f.monitor.write(f.store->items().first());
        QCOMPARE(f.pasteboard.content.urls, QList({ file, file }));
        f.monitor.poll();
        QCOMPARE(f.store->items(), before);
        // An entry that holds nothing takes nothing away.
        const auto count = f.pasteboard.changeCount();
        f.monitor.write(ClipboardItem());
        QCOMPARE(f.pasteboard.changeCount(), count);
    }

    void offersAnImageAsFileAndAsPng()
    {
        Fixture f;
        const auto write = [&f](const QString& name, const QByteArray& data) {
            QFile file(f.path(name));
            if (!data.isEmpty() && file.open(QFile::WriteOnly))
                file.write(data);
            file.close();
            ClipboardItem item;
            item.kind = Kind::Image;
            item.imagePath = file.fileName();
            f.monitor.write(item);
            const auto& object = f.pasteboard.written.first();
            return object.url == QUrl::fromLocalFile(file.fileName()) ? object.png() : "no file";
        };
        QCOMPARE(write(u"a.PNG"_s, "\x89PNG as it is"), "\x89PNG as it is");
        QCOMPARE(write(u"a.bmp"_s, picture("bmp")), picture("png"));
        QCOMPARE(write(u"broken.jpg"_s, "?"), QByteArray());
        QCOMPARE(write(u"gone.png"_s, {}), QByteArray());
    }
};

QTEST_GUILESS_MAIN(ClipboardMonitorTest)
#include "ClipboardMonitorTest.moc"
