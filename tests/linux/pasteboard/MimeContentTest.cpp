#include "linux/pasteboard/MimeContent.h"

#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

using Offer = QList<std::pair<QString, QByteArray>>;

class MimeContentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTheFormThatSaysMost_data()
    {
        QTest::addColumn<Offer>("offer");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<QString>("string");
        QTest::addColumn<QStringList>("urls");

        const auto row = [](const char* name, const Offer& offer, QStringView type, const QByteArray& image,
                             const QString& string, const QStringList& urls) {
            QTest::newRow(name) << offer << type.toString() << image << string << urls;
        };
        row("a file, not its name and picture",
            { { u"image/png"_s, "P" }, { u"text/plain"_s, "a" },
                { u"text/uri-list"_s, "#x\r\nfile:///a%20b\r\n" } },
            pasteboardtype::fileUrl, {}, {}, { u"file:///a b"_s });
        row("a file manager's own list",
            { { u"x-special/gnome-copied-files"_s, "cut\nfile:///a\nfile:///b" } }, pasteboardtype::fileUrl,
            {}, {}, { u"file:///a"_s, u"file:///b"_s });
        row("an image with its address", { { u"text/uri-list"_s, "https://x.y/z" }, { u"image/png"_s, "P" } },
            pasteboardtype::png, "P", {}, { u"https://x.y/z"_s });
        row("an empty PNG gives way to TIFF", { { u"image/png"_s, "" }, { u"image/tiff"_s, "T" } },
            pasteboardtype::tiff, "T", {}, {});
        row("a link without text", { { u"text/uri-list"_s, "https://x.y/z" } }, pasteboardtype::url, {}, {},
            { u"https://x.y/z"_s });
        row("UTF-8", { { u"text/plain"_s, "\xD0\x9F\0"_ba } }, pasteboardtype::string, {}, u"П"_s, {});
        row("no UTF-8", { { u"text/plain"_s, "caf\xE9" } }, pasteboardtype::string, {}, u"café"_s, {});
        row("cut in a character", { { u"text/plain;charset=utf-8"_s, "a\xE2\x82" } }, pasteboardtype::string,
            {}, u"a"_s, {});
    }

    void readsTheFormThatSaysMost()
    {
        QFETCH(Offer, offer);
        QFETCH(QString, type);
        QFETCH(QByteArray, image);
        QFETCH(QString, string);
        QFETCH(QStringList, urls);

        auto mime = std::make_unique<QMimeData>();
        for (const auto& [name, bytes] : offer)
            mime->setData(name, bytes);
        const MimeContent content(*mime);
        mime.reset();

        QVERIFY(content.types().contains(type));
        QVERIFY(image.isEmpty() || content.data(type) == image);
        QCOMPARE(content.string().value_or(QString()), string);
        QStringList found;
        for (const auto& url : content.urls())
            found << url.toString();
        QCOMPARE(found, urls);
    }
};

QTEST_GUILESS_MAIN(MimeContentTest)
#include "MimeContentTest.moc"
