#include "linux/display/DisplayPanels.h"

#include "support/TestFolder.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

namespace {

const QSize fullMode(3024, 1964);
const auto shipped = QStringLiteral(NIMBARROW_PANELS);
const QRectF laptopNotch(1328, 0, 368, 64);

QByteArray description(const QByteArray& path, int width = 3024, int height = 1964)
{
    return R"({"name":"A","x-res":)" + QByteArray::number(width) + R"(,"y-res":)" + QByteArray::number(height)
        + R"(,"cutouts":[{"name":"notch","path":")" + path + R"("}]})";
}

} // namespace

class DisplayPanelsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void modeDecidesWhereTheCutoutIs_data()
    {
        QTest::addColumn<QSize>("mode");
        QTest::addColumn<QRectF>("box");

        QTest::newRow("native") << fullMode << laptopNotch;
        QTest::newRow("the rows beside the notch hidden") << QSize(3024, 1890) << QRectF();
        QTest::newRow("other rows hidden") << QSize(3024, 1900) << QRectF();
        QTest::newRow("half") << QSize(1512, 982) << QRectF(664, 0, 184, 32);
        QTest::newRow("a fractional scale's rounding") << QSize(3024, 1965) << laptopNotch;
        QTest::newRow("half with the rows hidden") << QSize(1512, 945) << QRectF();
        QTest::newRow("another aspect ratio") << QSize(1920, 1080) << QRectF();
        QTest::newRow("turned") << QSize(1964, 3024) << QRectF();
        QTest::newRow("nothing") << QSize(0, 0) << QRectF();
    }

    void modeDecidesWhereTheCutoutIs()
    {
        QFETCH(const QSize, mode);
        QFETCH(const QRectF, box);
        const auto panel = DisplayPanel::fromJson(description("M1328 0H1696V64H1328Z"));
        QVERIFY(panel);
        QCOMPARE(panel->topCutout(mode, 74).value_or(QRectF()), box);
    }

    void onlyACutoutAtTheTopOfThePanelCounts_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QRectF>("box");

        QTest::newRow("reaches out of the panel") << description("M1328-9H1696V64H1328Z") << laptopNotch;
        QTest::newRow("outside") << description("M9000 0H9100V64H9000Z") << QRectF();
        QTest::newRow("at the bottom") << description("M10 1900H60V1964H10Z") << QRectF();
        QTest::newRow("no path") << description("wave") << QRectF();
        QTest::newRow("no height") << description("M0 0H10") << QRectF();
        QTest::newRow("not JSON") << QByteArray("{\"x-res\": 3024,") << QRectF();
        QTest::newRow("no object") << QByteArray("[1]") << QRectF();
        QTest::newRow("no resolution") << description("M1328 0H1696V64H1328Z", 0, 0) << QRectF();
        QTest::newRow("absurd resolution")
            << description("M1328 0H1696V64H1328Z", 2'000'000'000, 5) << QRectF();
        QTest::newRow("wrong types") << QByteArray(R"({"x-res":"3024","y-res":{},"cutouts":7})") << QRectF();
    }

    void onlyACutoutAtTheTopOfThePanelCounts()
    {
        QFETCH(const QByteArray, json);
        QFETCH(const QRectF, box);
        const auto panel = DisplayPanel::fromJson(json);
        const auto cutout = panel ? panel->topCutout(fullMode, 0) : std::nullopt;
        QCOMPARE(cutout.value_or(QRectF()), box);
    }

    void machineDescribesItsBuiltInScreenOnly()
    {
        m_folder->write(u"tree/compatible"_s, QByteArray("apple,unknown\0apple,j314c\0", 26));
        m_folder->write(u"tree/soc/dcp@38bc00000/apple,notch-height"_s, QByteArray("\0\0\0\x4a", 4));
        QVERIFY(QDir().mkpath(path(u"shipped/Nimbarrow"_s)));
        QVERIFY(QFile::link(shipped, path(u"shipped/Nimbarrow/display-panels"_s)));
        const DisplayPanels panels({ path(u"none"_s), path(u"shipped"_s), path(u"data"_s) }, path(u"tree"_s));
        m_folder->write(u"data/Nimbarrow/display-panels/HDMI-1.json"_s, description("M0 0H10V5H0Z", 100, 50));

        QCOMPARE(panels.topCutout(u"eDP-1"_s, fullMode), std::optional(laptopNotch));
        QVERIFY(!panels.topCutout(u"eDP-1"_s, { 3024, 1890 }));
        QVERIFY(!panels.topCutout(u"DP-1"_s, fullMode));
        QCOMPARE(panels.topCutout(u"HDMI-1"_s, { 100, 50 }), std::optional(QRectF(0, 0, 10, 5)));
        QVERIFY(!panels.topCutout(u"../display-panels/HDMI-1"_s, { 100, 50 }));

        // What the user says of the screen itself comes first.
        m_folder->write(u"data/Nimbarrow/display-panels/eDP-1.json"_s, description("M100 0H200V20H100Z"));
        const DisplayPanels own({ path(u"data"_s), path(u"shipped"_s) }, path(u"tree"_s));
        QCOMPARE(own.topCutout(u"eDP-1"_s, fullMode), std::optional(QRectF(100, 0, 100, 20)));
    }

    void shippedDescriptionsAreReadable()
    {
        const QDir folder(shipped);
        const auto files = folder.entryList({ u"*.json"_s });
        QCOMPARE(files.size(), 4);
        for (const auto& name : files) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const auto panel = DisplayPanel::fromJson(file.readAll());
            QVERIFY2(panel && panel->topCutout(fullMode, 74) == laptopNotch, qPrintable(name));
        }
    }

    void hugeFilesAndPipesAreLeftAlone()
    {
        m_folder->write(
            u"data/Nimbarrow/display-panels/a.json"_s, description("M1 0H9V9Z") + QByteArray(300'000, ' '));
        QVERIFY(QProcess::execute(u"mkfifo"_s, { path(u"data/Nimbarrow/display-panels/b.json"_s) }) == 0);
        const DisplayPanels panels({ path(u"data"_s) }, path(u"tree"_s));
        QVERIFY(!panels.topCutout(u"a"_s, fullMode));
        QVERIFY(!panels.topCutout(u"b"_s, fullMode));
    }

    void descriptionThatComesLaterOrChangesIsSeen()
    {
        DisplayPanels panels({ path(u"data"_s) }, path(u"tree"_s));
        QVERIFY(!panels.topCutout(u"screen"_s, fullMode));
        QSignalSpy changed(&panels, &DisplayPanels::changed);
        const auto file = u"data/Nimbarrow/display-panels/screen.json"_s;

        m_folder->write(file, description("M1328 0H1696V64H1328Z"));
        QTRY_COMPARE(panels.topCutout(u"screen"_s, fullMode), std::optional(laptopNotch));
        QVERIFY(!changed.isEmpty());

        m_folder->write(file, description("M100 0H200V20H100Z"));
        QTRY_COMPARE(panels.topCutout(u"screen"_s, fullMode), std::optional(QRectF(100, 0, 100, 20)));

        QVERIFY(QFile::remove(path(file)));
        QTRY_VERIFY(!panels.topCutout(u"screen"_s, fullMode));
    }

    void whatIsDeclaredComesBeforeWhatIsShipped()
    {
        m_folder->write(u"shipped/Nimbarrow/display-panels/eDP-1.json"_s, description("M100 0H200V20H100Z"));
        DisplayPanels panels({ path(u"data"_s), path(u"shipped"_s) }, path(u"tree"_s));
        QCOMPARE(panels.topCutout(u"eDP-1"_s, fullMode), std::optional(QRectF(100, 0, 100, 20)));
        for (const auto& box : { QRect(1312, 0, 400, 64), QRect(), QRect(1328, 0, 368, 64) }) {
            QVERIFY(!panels.declare(u"eDP-1"_s, fullMode, box).place.isEmpty());
            QCOMPARE(panels.topCutout(u"eDP-1"_s, fullMode).value_or(QRectF()), QRectF(box));
        }
        for (const auto& [folder, screen] :
            { std::pair { u"data"_s, u"../eDP-1"_s }, { u"/proc"_s, u"eDP-1"_s } })
            QVERIFY(!DisplayPanels({ folder }, {}).declare(screen, fullMode, {}).failure.isEmpty());
    }

    void init() { m_folder = std::make_unique<TestFolder>(); }

private:
    [[nodiscard]] QString path(const QString& relative) const { return m_folder->filePath(relative); }

    std::unique_ptr<TestFolder> m_folder;
};

QTEST_MAIN(DisplayPanelsTest)
#include "DisplayPanelsTest.moc"
