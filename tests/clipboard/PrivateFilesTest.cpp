#include "clipboard/PrivateFiles.h"

#include "clipboard/ClipboardIndex.h"
#include "support/HistoryFixture.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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
    void historyComesBack()
    {
        HistoryFixture fixture;
        fixture.store->addText(u"text"_s, u"Нотатки"_s);
        fixture.store->addImage("\x89PNG one", {});
        fixture.store->addImage("\x89PNG two", {});
        settle(fixture);
        fixture.store->togglePin(fixture.store->items().last().id);
        settle(fixture);
        auto expected = fixture.store->items();
        QVERIFY(QFile::remove(*expected.at(1).imagePath));
        fixture.restart();
        expected.removeAt(1);
        QCOMPARE(fixture.store->items(), expected);
        QCOMPARE(fixture.time.pending(), 0);
    }

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

    void fullDiskLeavesTheOldIndex()
    {
        HistoryFixture fixture;
        fixture.store->addText(u"old"_s, {});
        settle(fixture);
        // The write breaks off in the middle, as on a full disk.
        ::signal(SIGXFSZ, SIG_IGN);
        rlimit before {};
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit full { 4096, before.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &full);
        fixture.store->addText(QString(15'000, u'x'), {});
        fixture.store->addImage("\x89PNG" + QByteArray(15'000, 'x'), {});
        settle(fixture);
        settle(fixture);
        ::setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(fixture.store->items().size(), 2);
        QVERIFY(QDir(fixture.path(u"images"_s)).isEmpty());
        QCOMPARE(QDir(fixture.path({})).entryList(QDir::Files), QStringList { u"index.json"_s });
        auto index = privatefiles::read(fixture.path(u"index.json"_s), 1'000'000);
        QCOMPARE(clipboardindex::decode(index.value())->size(), 1);
        fixture.store->togglePin(fixture.store->items().first().id);
        fixture.restart();
        QCOMPARE(fixture.store->items().size(), 2);
    }

    void killLeavesTheOldIndexOrTheNew()
    {
        HistoryFixture fixture;
        for (auto number = 0; number < 60; ++number)
            fixture.store->addText(QString::number(number).repeated(2000), {});
        settle(fixture);
        for (auto round = 0; round < 20; ++round) {
            const auto child = ::fork();
            if (child == 0) {
                for (auto number = 0;; ++number) {
                    fixture.store->togglePin(fixture.store->items().at(number % 60).id);
                    settle(fixture);
                }
            }
            QVERIFY(child > 0);
            ::usleep(QRandomGenerator::global()->bounded(1000U, 30'000U));
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
            const auto index = privatefiles::read(fixture.path(u"index.json"_s), clipboardindex::maxSize);
            QVERIFY(index);
            QCOMPARE(clipboardindex::decode(*index).value_or(QList<ClipboardItem>()).size(), 60);
        }
        fixture.restart();
        settle(fixture);
        QCOMPARE(QDir(fixture.path({})).entryList(QDir::Files), QStringList { u"index.json"_s });
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
        const auto path = fixture.path(u"index.json"_s);
        if (index == "folder")
            QDir().mkpath(path);
        else if (index == "pipe")
            ::mkfifo(QFile::encodeName(path).constData(), 0600);
        else
            put(path, index);
        fixture.restart();
        QVERIFY(fixture.store->isEmpty());
        fixture.store->addText(u"new"_s, {});
        settle(fixture);
        fixture.restart();
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
