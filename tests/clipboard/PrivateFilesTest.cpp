#include "files/PrivateFiles.h"

#include "support/HistoryFixture.h"

#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace nimbarrow;

namespace {

mode_t mode(const QString& path)
{
    struct stat status { };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
}

void put(const QString& path, const QByteArray& data)
{
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(data);
}

void settle(HistoryFixture& fixture)
{
    fixture.time.advance(1s);
    fixture.queues.runAll();
}

} // namespace

/// The history on a real disk, and what can happen to it there.
class PrivateFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void takesFilesAwayFromEverybodyElse_data()
    {
        QTest::addColumn<mode_t>("mask");
        QTest::newRow("wide mask") << mode_t { 0 };
        QTest::newRow("narrow mask") << mode_t { 0777 };
    }
    void takesFilesAwayFromEverybodyElse()
    {
        QFETCH(mode_t, mask);
        HistoryFixture fixture;
        const auto old = fixture.path(u"images/old.png"_s);
        const auto unfinished = fixture.path(u"index.json.AbCdEf"_s);
        put(old, "x");
        put(unfinished, "x");
        put(fixture.path(u"index.json"_s), "[]");
        for (const auto& name : { fixture.path({}), fixture.path(u"images"_s), old })
            ::chmod(QFile::encodeName(name).constData(), 0777);
        const auto before = ::umask(mask);
        fixture.restart();
        fixture.store->addImage("\x89PNG", {});
        settle(fixture);
        settle(fixture);
        ::umask(before);
        QCOMPARE(mode(fixture.path({})), 0700U);
        QCOMPARE(mode(fixture.path(u"images"_s)), 0700U);
        QCOMPARE(mode(fixture.path(u"index.json"_s)), 0600U);
        QCOMPARE(mode(old), 0600U);
        QCOMPARE(mode(*fixture.store->items().first().imagePath), 0600U);
        QVERIFY(!QFile::exists(unfinished));
    }

    void startsWithWhateverLiesThere_data()
    {
        QTest::addColumn<QByteArray>("index");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("truncated") << QByteArray("[{\"id\":");
        QTest::newRow("a folder") << QByteArray("folder");
        QTest::newRow("a pipe") << QByteArray("pipe");
    }
    void startsWithWhateverLiesThere()
    {
        QFETCH(QByteArray, index);
        HistoryFixture fixture;
        fixture.store.reset();
        const auto path = fixture.path(u"index.json"_s);
        if (index == "folder")
            QDir().mkpath(path);
        else if (index == "pipe")
            ::mkfifo(QFile::encodeName(path).constData(), 0600);
        else if (!index.isEmpty())
            put(path, index);
        const auto image = fixture.path(u"images/0E8E3D3B-5A39-4B6E-8A3C-0B8F8B9B7C1D.png"_s);
        put(image, "x");
        fixture.restart();
        QVERIFY(fixture.store->isEmpty());
        fixture.queues.runAll();
        // What cannot be read may still name it.
        QCOMPARE(QFile::exists(image), !index.isEmpty());
        fixture.store->addText(u"new"_s, {});
        settle(fixture);
        fixture.restart();
        fixture.queues.runAll();
        QCOMPARE(QFile::exists(image), index == "folder");
        // Nothing takes the place of a folder.
        QCOMPARE(fixture.store->items().size(), index == "folder" ? 0 : 1);
    }

    void worksWithoutAnImagesFolder()
    {
        HistoryFixture fixture;
        fixture.store.reset();
        QVERIFY(QDir(fixture.path(u"images"_s)).removeRecursively());
        put(fixture.path(u"images"_s), "in the way");
        fixture.restart();
        fixture.store->addImage("\x89PNG", {});
        fixture.store->addText(u"text"_s, {});
        settle(fixture);
        QCOMPARE(fixture.store->items().size(), 1);
    }
};

QTEST_GUILESS_MAIN(PrivateFilesTest)
#include "PrivateFilesTest.moc"
