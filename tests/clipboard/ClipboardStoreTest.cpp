#include "preferences/L10n.h"
#include "support/HistoryFixture.h"
#include "support/Test.h"

#include <QBuffer>
#include <QImage>

using Kind = ClipboardItem::Kind;

class ClipboardStoreTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<HistoryFixture>();
        L10n::setCurrent(L10n::English);
    }

    void tellsLinksFromTexts()
    {
        const QList<std::pair<QString, Kind>> rows {
            { u"https://example.org/a?b#c"_s, Kind::Link },
            { u"http://приклад.укр/шлях"_s, Kind::Link },
            { u"\n https://example.org\u2003"_s, Kind::Link },
            { u"https://example.org /a"_s, Kind::Text },
            { u"https://example.org/\u2003a"_s, Kind::Text },
            { u"https://"_s, Kind::Text },
            { u"HTTPS://example.org"_s, Kind::Text },
            { u"ftp://example.org"_s, Kind::Text },
            { u"https://[::1"_s, Kind::Text },
        };
        for (const auto& [text, kind] : rows) {
            store().addText(text, {});
            QCOMPARE(store().items().first().kind, kind);
            QCOMPARE(store().items().first().text, kind == Kind::Link ? text.trimmed() : text);
        }
    }

    void keepsSoManyCharactersOfAText_data()
    {
        const Rows<QString, qsizetype> row;
        const auto repeated = [&](const char* name, const QString& character, int count, int kept) {
            row(name, character.repeated(count), kept * character.size());
        };
        repeated("as many as may be", u"a"_s, 20'000, 20'000);
        repeated("one more", u"a"_s, 20'001, 20'000);
        repeated("letters of several units", u"\U0001f468\u200d\U0001f469\u200d\U0001f467"_s, 20'005, 20'000);
        repeated("marks on letters", u"e\u0301"_s, 20'000, 20'000);
        repeated("line ends of two units", u"\r\nx"_s, 15'000, 10'000);
        repeated("flags", u"\U0001f1fa\U0001f1e6"_s, 30'000, 20'000);
        row("one letter under endless marks", u'e' + QString(3'000'000, QChar(0x301)), 1024 * 1024);
        row("an endless link", u"https://example.org/"_s + QString(3'000'000, u'x'), 20'000);
    }
    void keepsSoManyCharactersOfAText()
    {
        const auto [text, kept] = Rows<QString, qsizetype>::current();
        store().addText(text, {});
        m_fixture->queues.runAll();
        QCOMPARE(store().items().first().text->size(), kept);
        QVERIFY(text.startsWith(*store().items().first().text));
    }

    void filesStayWhereTheyLie()
    {
        const auto url = [](const QString& path) { return QUrl::fromLocalFile(path); };
        store().addFiles({}, {});
        store().addFiles({ url(u"/a/photo.JPG"_s) }, u"Files"_s);
        store().addFiles({ url(u"/a/one.png"_s), url(u"/a/two.png"_s) }, {});
        store().addFiles({ url(u"/a/.png"_s) }, {});
        QCOMPARE(store().items().size(), 3);
        QCOMPARE(store().imageItems().size(), 1);
        const auto name = u"/Nimbarrow/images/0E8E3D3B-5A39-4B6E-8A3C-0B8F8B9B7C1D.png"_s;
        store().addFiles({ url(m_fixture->locations.folder + name) }, {});
        QCOMPARE(store().imageItems().size(), 1);
        store().addFiles({ url(u"/backup"_s + name) }, {});
        QCOMPARE(store().imageItems().size(), 2);
        store().remove(store().imageItems().first().id);
        QCOMPARE(store().items().last().imagePath, u"/a/photo.JPG"_s);
        QCOMPARE(store().items().last().sourceApp, u"Files"_s);
        QCOMPARE(store().items().at(1).filePaths, QStringList({ u"/a/one.png"_s, u"/a/two.png"_s }));
    }

    void whatIsWrittenCanBeReadAgain()
    {
        m_fixture->settings.setHistoryLimit(500);
        const QString marks(1'100'000, QChar(0x301));
        store().addText(u"pinned"_s + marks, {});
        m_fixture->queues.runAll();
        store().togglePin(store().items().first().id);
        store().addText(u"first"_s + marks, QString(marks));
        m_fixture->queues.runAll();
        const auto many = [](int number, int count, int length) {
            const QString folder(length, u'a');
            QList<QUrl> urls;
            for (auto file = 0; file < count; ++file)
                urls << QUrl::fromLocalFile(u"/%1/%2/%3"_s.arg(folder).arg(number).arg(file));
            return urls;
        };
        for (auto number = 0; number < 8; ++number)
            store().addFiles(many(number, 100, 40'000), {});
        store().addFiles(many(8, 10'000, 1), {});
        QCOMPARE(store().items().first().filePaths->size(), 10'000);
        const auto before = store().items();
        QVERIFY(before.size() > 6 && before.size() < 10 && before.last().pinned);
        store().addFiles(many(9, 10'001, 1), {});
        store().addFiles(
            { QUrl::fromLocalFile(u"/"_s + QString(5'000'000, u'a')), QUrl::fromLocalFile(u"/b"_s) }, {});
        QCOMPARE(store().items(), before);
        m_fixture->restart();
        QCOMPARE(store().items().size(), before.size());
        QCOMPARE(store().items().first().filePaths, before.first().filePaths);

        // Pinned entries leave room for what is copied next.
        for (const auto& item : QList(store().items()))
            store().togglePin(item.id);
        store().addText(u"next"_s, {});
        QCOMPARE(store().items().first().text, u"next"_s);
    }

    void aSavedScreenshotIsOneEntryWithItsCopy_data()
    {
        const Rows<QString, int, int, qsizetype> row;
        row("the same picture", u"Screenshot.png"_s, 0, 3, { 1 });
        row("as a photograph", u"Screenshot.jpg"_s, 0, 3, { 1 });
        row("a letter more", u"Screenshot.png"_s, 1, 3, { 2 });
        row("another photograph", u"Screenshot.jpg"_s, 100, 3, { 2 });
        row("long ago", u"Screenshot.png"_s, 0, 11, { 2 });
    }
    void aSavedScreenshotIsOneEntryWithItsCopy()
    {
        const auto [file, difference, secondsLater, entries] = Rows<QString, int, int, qsizetype>::current();
        const auto picture = [](int changed) {
            QImage image(120, 80, QImage::Format_RGB32);
            for (auto y = 0; y < image.height(); ++y) {
                for (auto x = 0; x < image.width(); ++x)
                    image.setPixel(x, y, qRgb(2 * x, y < changed ? 255 - 2 * x : 3 * y, changed));
            }
            return image;
        };
        const QTemporaryDir screenshots;
        const auto path = screenshots.filePath(file);
        auto saved = picture(difference);
        // Tools write when it was taken and with what.
        saved.setText(u"Software"_s, u"gnome-screenshot"_s);
        QVERIFY(saved.save(path));
        QByteArray copied;
        QBuffer buffer(&copied);
        QVERIFY(picture(0).save(&buffer, "png"));

        const auto copy = [&] { store().addImage(copied, u"Shell"_s); };
        const auto save = [&] { store().addScreenshot(QUrl::fromLocalFile(path)); };
        enum Order { CopiedFirst, SavedFirst, CopyUnderWay };
        for (const auto order : { CopiedFirst, SavedFirst, CopyUnderWay }) {
            init();
            const auto asTheRowSays = order != CopyUnderWay || secondsLater < 10;
            if (order == SavedFirst)
                save();
            else
                copy();
            if (order != CopyUnderWay)
                m_fixture->queues.runAll();
            store().addText(u"between"_s, {});
            if (order != CopyUnderWay)
                m_fixture->time.advance(std::chrono::seconds(secondsLater));
            if (order == SavedFirst)
                copy();
            else
                save();
            m_fixture->queues.runAll();
            m_fixture->time.advance(1s);
            m_fixture->queues.runAll();
            const auto expected = asTheRowSays ? entries : qsizetype { 1 };
            QCOMPARE(store().imageItems().size(), expected);
            const auto own = QDir(m_fixture->path(u"images"_s)).entryList(QDir::Files).size();
            QCOMPARE(own, expected - 1);
            if (expected > 1)
                continue;
            QVERIFY(store().imageItems().first().isScreenshot);
            QCOMPARE(store().imageItems().first().imagePath, path);
            QCOMPARE(store().imageItems().first().sourceApp, u"Screenshot"_s);
            // The same file again is no news.
            save();
            QCOMPARE(store().items().size(), 2);
        }
    }

    void removesNoFileOutsideItsFolder()
    {
        QDir().mkpath(m_fixture->path(u"images2"_s));
        const QList<std::pair<QString, bool>> rows { { u"images/a.png"_s, false },
            { u"images2/a.png"_s, true }, { u"images/../a.png"_s, true },
            { u"images/../images2/a.png"_s, true }, { u"images2/../images/a.png"_s, false } };
        for (const auto& [name, stays] : rows) {
            const auto path = m_fixture->path(name);
            QVERIFY(QFile(path).open(QFile::WriteOnly));
            store().addFiles({ QUrl::fromLocalFile(path) }, {});
            store().clear();
            m_fixture->queues.runAll();
            QVERIFY2(QFile::exists(path) == stays, qPrintable(name));
        }
    }

private:
    ClipboardStore& store() { return *m_fixture->store; }

    std::unique_ptr<HistoryFixture> m_fixture;
};

QTEST_GUILESS_MAIN(ClipboardStoreTest)
#include "ClipboardStoreTest.moc"
