#include "linux/pasteboard/OfferReader.h"

#include "support/Test.h"

#include <QSysInfo>

using Offer = QList<std::pair<QString, QByteArray>>;

class OfferReaderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTheFormThatSaysMost_data()
    {
        const Rows<Offer, QStringView, QByteArray, QString, QStringList> row;
        row("a file, not its name and picture",
            { { u"image/png"_s, "P" }, { u"text/plain"_s, "a" },
                { u"text/uri-list"_s, "#x\r\nfile:///a%20b\r\n" } },
            pasteboardtype::fileUrl, {}, {}, { u"file:///a b"_s });
        row("a file manager's own list",
            { { u"x-special/gnome-copied-files"_s, "cut\nfile:///a\nfile:///b" } }, pasteboardtype::fileUrl,
            {}, {}, { u"file:///a"_s, u"file:///b"_s });
        const auto host = QSysInfo::machineHostName().toUpper().toUtf8();
        row("files of this machine",
            { { u"text/uri-list"_s, "file://localhost/a\nfile://" + host + "/b\nfile:/c" } },
            pasteboardtype::fileUrl, {}, {}, { u"file:///a"_s, u"file:///b"_s, u"file:///c"_s });
        row("a file of another machine is an address", { { u"text/uri-list"_s, "file://elsewhere/a" } },
            pasteboardtype::url, {}, {}, { u"file://elsewhere/a"_s });
        row("names that are not UTF-8", { { u"text/uri-list"_s, "file:///caf%E9\nfile:///\xE9 \xD0\x9F" } },
            pasteboardtype::fileUrl, {}, {}, { u"file:///caf%E9"_s, u"file:///%E9 П"_s });
        row("cells of a table", { { u"image/png"_s, "P" }, { u"text/plain"_s, "1\t2" } },
            pasteboardtype::string, {}, u"1\t2"_s, {});
        row("a picture with nothing beside it", { { u"text/plain"_s, " \n" }, { u"image/png"_s, "P" } },
            pasteboardtype::png, "P", {}, {});
        row("a picture with its address", { { u"text/plain"_s, "https://x.y/z\n" }, { u"image/png"_s, "P" } },
            pasteboardtype::png, "P", u"https://x.y/z\n"_s, {});
        row("a picture that cannot be had", { { u"text/plain"_s, "https://x.y/z" }, { u"image/png"_s, "" } },
            pasteboardtype::string, {}, u"https://x.y/z"_s, {});
        row("an image with an address beside it",
            { { u"text/uri-list"_s, "https://x.y/z" }, { u"image/png"_s, "P" } }, pasteboardtype::png, "P",
            {}, { u"https://x.y/z"_s });
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
        const auto [offer, typeName, image, string, urls]
            = Rows<Offer, QStringView, QByteArray, QString, QStringList>::current();
        const auto type = typeName.toString();
        QStringList targets;
        for (const auto& [name, bytes] : offer)
            targets << name;
        OfferReader reader(targets);
        while (!reader.next().isEmpty())
            reader.take(offer.at(targets.indexOf(reader.next())).second);
        const auto& content = reader.snapshot();

        QVERIFY(content.types.contains(type));
        QCOMPARE(content.bytes.value(type), image.isEmpty() ? content.bytes.value(type) : image);
        QCOMPARE(content.bytes.contains(pasteboardtype::png.toString()), image == "P");
        QCOMPARE(content.string.value_or(QString()), string);
        QStringList found;
        for (const auto& url : content.urls)
            found << url.toString();
        QCOMPARE(found, urls);
        // What is text has no image that anybody would prefer to it.
        QCOMPARE(content.types.contains(pasteboardtype::png.toString()) && !string.isEmpty(),
            string.startsWith("https:"_L1));
    }
};

QTEST_GUILESS_MAIN(OfferReaderTest)
#include "OfferReaderTest.moc"
