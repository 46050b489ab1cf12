#include "linux/screenshots/InotifyFolderEvents.h"

#include "support/Test.h"
#include "support/TestFolder.h"

#include <QSaveFile>
#include <QTemporaryFile>

#include <fcntl.h>
#include <unistd.h>

class InotifyFolderEventsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_disk = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_disk->path()).mkdir(u"watched"_s));
        m_changes = 0;
        m_watch = m_events.watch(inside(), [this] { ++m_changes; });
        QVERIFY(m_watch);
    }

    void cleanup() { m_watch.reset(); }

    void tellsOfAFileOnceItIsWritten()
    {
        QFile file(inside(u"direct.png"_s));
        QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
        for (auto chunk = 0; chunk < 3; ++chunk) {
            QCOMPARE(file.write("chunk"), 5);
            expectNothing();
            QCOMPARE(m_watch->unfinished(), QStringList { u"direct.png"_s });
        }
        file.close();
        QTRY_COMPARE(m_changes, 1);
        QCOMPARE(m_watch->unfinished(), QStringList());
    }

    void tellsOfAFileThatGetsItsName()
    {
        {
            QTemporaryFile hidden(inside(u".tmp-XXXXXX"_s));
            QVERIFY(hidden.open());
            hidden.write("all of it");
            hidden.setAutoRemove(false);
            QVERIFY(hidden.rename(inside(u"Screenshot.png"_s)));
        }
        QTRY_VERIFY(m_changes > 0);
        expectMore([&] { QVERIFY(QFile::rename(inside(u"Screenshot.png"_s), inside(u"other.png"_s))); });
        expectMore([&] { QVERIFY(QFile::rename(inside(u"other.png"_s), m_disk->filePath(u"out.png"_s))); });
        expectMore([&] { QVERIFY(QFile::rename(m_disk->filePath(u"out.png"_s), inside(u"in.png"_s))); });
        expectMore([&] {
            QCOMPARE(
                ::link(qPrintable(inside(u"in.png"_s)), qPrintable(inside(u"Screenshot link.png"_s))), 0);
        });
        expectMore([&] { QVERIFY(QFile::remove(inside(u"in.png"_s))); });
    }

    void tellsOfAFileThatHasNoNameUntilItIsWritten()
    {
        {
            QSaveFile file(inside(u"Screenshot.png"_s));
            QVERIFY(file.open(QSaveFile::WriteOnly));
            QCOMPARE(file.write("all of it"), 9);
            expectNothing();
            QVERIFY(file.commit());
        }
        QTRY_VERIFY(m_changes > 0);
        QCOMPARE(m_watch->unfinished(), QStringList());
        // By hand, as the descriptor that it was written on may stay open.
        const auto handle = ::open(qPrintable(inside()), O_TMPFILE | O_WRONLY, 0600);
        QVERIFY(handle >= 0);
        expectMore([&] {
            const auto self = "/proc/self/fd/"_ba + QByteArray::number(handle);
            QCOMPARE(::linkat(AT_FDCWD, self.constData(), AT_FDCWD, qPrintable(inside(u"b.png"_s)),
                         AT_SYMLINK_FOLLOW),
                0);
        });
        QCOMPARE(m_watch->unfinished(), QStringList());
        ::close(handle);
    }

    void staysWithAFolderThatMoves()
    {
        QVERIFY(m_watch->isCurrent());
        expectMore([&] { QVERIFY(QDir().rename(inside(), m_disk->filePath(u"moved"_s))); });
        QVERIFY(!m_watch->isCurrent());
        // Another folder in its place is another folder.
        QVERIFY(QDir(m_disk->path()).mkdir(u"watched"_s));
        writeFile(inside(u"a.png"_s), "x");
        expectNothing();
        expectMore([&] { writeFile(m_disk->filePath(u"moved/a.png"_s), "x"); });
        expectMore([&] { QVERIFY(QDir(m_disk->filePath(u"moved"_s)).removeRecursively()); });
    }

    void endsWhenDropped()
    {
        m_watch = m_events.watch(inside(), [this] {
            ++m_changes;
            m_watch.reset();
        });
        writeFile(inside(u"b.png"_s), "x");
        QTRY_COMPARE(m_changes, 1);
        writeFile(inside(u"c.png"_s), "x");
        expectNothing();
        QVERIFY(!m_events.watch(inside(u"c.png"_s), [] {}));
    }

private:
    [[nodiscard]] QString inside(const QString& name = {}) const
    {
        return m_disk->filePath(u"watched"_s) + (name.isEmpty() ? QString() : u'/' + name);
    }

    void expectMore(const std::function<void()>& change) const
    {
        QTest::qWait(20);
        const auto before = m_changes;
        change();
        QTRY_VERIFY(m_changes > before);
    }

    void expectNothing() const
    {
        const auto before = m_changes;
        QTest::qWait(20);
        QCOMPARE(m_changes, before);
    }

    std::unique_ptr<QTemporaryDir> m_disk;
    InotifyFolderEvents m_events;
    int m_changes = 0;
    std::unique_ptr<FolderEvents::Watch> m_watch;
};

QTEST_GUILESS_MAIN(InotifyFolderEventsTest)
#include "InotifyFolderEventsTest.moc"
