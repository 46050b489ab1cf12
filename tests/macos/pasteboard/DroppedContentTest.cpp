#include "macos/pasteboard/DroppedContent.h"

#include "macos/pasteboard/MacDropReader.h"
#include "support/Test.h"

#include <QImage>
#include <QMimeData>

class DroppedContentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesAndLinks()
    {
        QMimeData drag;
        const QList<QUrl> urls { QUrl::fromLocalFile(u"/Users/a/Знімок.png"_s),
            QUrl(u"https://example.org"_s) };
        drag.setUrls(urls);
        drag.setText(u"Знімок.png"_s);
        QCOMPARE(MacDropReader().types(drag),
            (QStringList { pasteboardtype::fileUrl.toString(), pasteboardtype::string.toString() }));
        int given = 0;
        MacDropReader().read(drag, [&](const PasteboardContent& content) {
            ++given;
            QCOMPARE(content.urls(), urls);
            QCOMPARE(content.fileUrls(), urls.first(1));
            QCOMPARE(content.string(), u"Знімок.png"_s);
        });
        QCOMPARE(given, 1);
    }

    void picturesAreReadAsPng()
    {
        QImage picture(3, 2, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QMimeData decoded;
        decoded.setImageData(picture);
        const DroppedContent content(decoded);
        QVERIFY(content.types().contains(pasteboardtype::png));
        QCOMPARE(QImage::fromData(content.data(pasteboardtype::png), "PNG").size(), picture.size());

        // Bytes that are there are not made again.
        QMimeData bytes;
        bytes.setData(u"image/png"_s, "as it was");
        QCOMPARE(DroppedContent(bytes).data(pasteboardtype::png), "as it was");
    }

    void aMarkedDropIsNotRead()
    {
        QMimeData drag;
        drag.setText(u"secret"_s);
        drag.setData(pasteboardtype::concealed.toString(), {});
        const DroppedContent content(drag);
        QVERIFY(content.types().contains(pasteboardtype::concealed));
        QVERIFY(!content.string());
        QVERIFY(content.data(pasteboardtype::string).isEmpty());
    }
};

QTEST_MAIN(DroppedContentTest)
#include "DroppedContentTest.moc"
