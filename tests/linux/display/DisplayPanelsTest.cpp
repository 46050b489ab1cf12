#include "linux/display/DisplayPanels.h"

#include "support/Test.h"
#include "support/TestFolder.h"

#include <QProcess>

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
        const Rows<QSize, QRectF> row;
        row("native", fullMode, laptopNotch);
        row("the rows beside the notch hidden", QSize(3024, 1890), {});
        row("other rows hidden", QSize(3024, 1900), {});
        row("half", QSize(1512, 982), QRectF(664, 0, 184, 32));
        row("a fractional scale's rounding", QSize(3024, 1965), laptopNotch);
        row("half with the rows hidden", QSize(1512, 945), {});
        row("another aspect ratio", QSize(1920, 1080), {});
        row("turned", QSize(1964, 3024), {});
        row("nothing", QSize(0, 0), {});
    }
    void modeDecidesWhereTheCutoutIs()
    {
        const auto [mode, box] = Rows<QSize, QRectF>::current();
        const auto panel = DisplayPanel::fromJson(description("M1328 0H1696V64H1328Z"));
        QVERIFY(panel);
        QCOMPARE(panel->topCutout(mode, 74).value_or(QRectF()), box);
    }

    void cutoutIsTheDrawnExtentOfItsPath()
    {
        const QList<std::pair<QByteArray, QRectF>> rows {
            { "M 10,20 L30 20 30 5Z", { 10, 5, 20, 15 } },
            { "m10 25 20 0v-25h-5z", { 10, 0, 20, 25 } },
            { "M.5 1.5L1.5.5 1e1 12E-1", { .5, .5, 9.5, 1 } },
            // The control points reach 40, the curve only 30.
            { "M0 0C0 40 20 40 20 0", { 0, 0, 20, 30 } },
            { "M0 40C0 80 20 80 20 40S40 0 40 40", { 0, 10, 40, 60 } },
            { "m0 10q10 20 20 0t20 0", { 0, 0, 40, 20 } },
            { "M0 10a10 10 0 0120 0", { 0, 0, 20, 10 } },
            { "M0 10A10 10 0 1 1 10 20", { 0, 0, 20, 20 } },
            { "M 355,0  H 725 C 580,0 615,82 540,82  C 465,82 500,0 355,0  Z", { 355, 0, 370, 82 } },
        };
        for (const auto& [path, box] : rows) {
            const auto cutouts = DisplayPanel::fromJson(description(path))->cutouts;
            QVERIFY2(cutouts.size() == 1, path.constData());
            const auto off = [&found = cutouts.first()](const QRectF& wanted) {
                return std::max({ qAbs(found.left() - wanted.left()), qAbs(found.top() - wanted.top()),
                    qAbs(found.right() - wanted.right()), qAbs(found.bottom() - wanted.bottom()) });
            };
            QVERIFY2(off(box) < 1e-6, path.constData());
        }
        for (const auto& path : { ""_ba, "   "_ba, "M"_ba, "M 1"_ba, "M 1 1"_ba, "L 1 1"_ba, "10 10"_ba,
                 "Z"_ba, "M0 0L"_ba, "M0 0L1"_ba, "M0 0L1 x"_ba, "M0 0 L1 1 5"_ba, "M0 0X1 1"_ba,
                 "M0 0C1 1 2 2"_ba, "M0 0A1 1 0 2 0 5 5"_ba, "M0 0Z5 5"_ba, "M0 0L1e 1"_ba, "M0 0L- 1"_ba,
                 "M0 0L1e300 5"_ba, "M0 0L99999999999 5"_ba, R"(M0 0L\u00ff\u00fe)"_ba, "M0 0H2000000V5Z"_ba,
                 R"(\u0000)"_ba.repeated(1000), "M0 0L" + QByteArray(200'000, '9'),
                 "M0 0" + "L1 1"_ba.repeated(60'000) + "x", R"(M0 0H5V5Z\"/><path id=\"path)"_ba,
                 "M0 0L1e" + QByteArray(200'000, '9') }) {
            const auto panel = DisplayPanel::fromJson(description(path));
            QVERIFY2(panel && panel->cutouts.isEmpty(), path.left(40).constData());
        }
    }

    void onlyACutoutAtTheTopOfThePanelCounts_data()
    {
        const Rows<QByteArray, QRectF> row;
        row("reaches out of the panel", description("M1328-9H1696V64H1328Z"), laptopNotch);
        row("outside", description("M9000 0H9100V64H9000Z"), {});
        row("at the bottom", description("M10 1900H60V1964H10Z"), {});
        row("no path", description("wave"), {});
        row("no height", description("M0 0H10"), {});
        row("not JSON", "{\"x-res\": 3024,", {});
        row("no object", "[1]", {});
        row("no resolution", description("M1328 0H1696V64H1328Z", 0, 0), {});
        row("absurd resolution", description("M1328 0H1696V64H1328Z", 2'000'000'000, 5), {});
        row("wrong types", QByteArray(R"({"x-res":"3024","y-res":{},"cutouts":7})"), {});
    }
    void onlyACutoutAtTheTopOfThePanelCounts()
    {
        const auto [json, box] = Rows<QByteArray, QRectF>::current();
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
