#include "qt/QSettingsDefaults.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

class QSettingsDefaultsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_path;

    void store(const QByteArray& lines) const
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[General]\n" + lines);
    }

private Q_SLOTS:
    void init()
    {
        m_path
            = m_folder.filePath("%1/Nimbarrow.conf"_L1.arg(QLatin1StringView(QTest::currentTestFunction())));
    }

    void whatTheUserSetStandsAboveTheDefaults()
    {
        const QVariantMap registered { { u"pasteOnClick"_s, false }, { u"historyLimit"_s, 100 },
            { u"language"_s, u"system"_s } };
        {
            QSettingsDefaults defaults(m_path);
            defaults.registerDefaults(registered);
            QCOMPARE(defaults.integer(u"historyLimit"), 100);
            QCOMPARE(defaults.string(u"language"), u"system"_s);
            QVERIFY(!QFile::exists(m_path));

            defaults.set(u"historyLimit", qint64(-5'000'000'000));
            defaults.set(u"pasteOnClick", true);
            QCOMPARE(defaults.integer(u"historyLimit"), -5'000'000'000);
        }
        QSettingsDefaults again(m_path);
        again.registerDefaults(registered);
        QCOMPARE(again.integer(u"historyLimit"), -5'000'000'000);
        QVERIFY(again.boolean(u"pasteOnClick"));
        QCOMPARE(again.string(u"language"), u"system"_s);

        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "[General]\nhistoryLimit=-5000000000\npasteOnClick=true\n"_ba);
    }

    void readsWhatPeopleWrite_data()
    {
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<bool>("boolean");
        QTest::addColumn<qint64>("integer");
        QTest::newRow("true") << "true"_ba << true << 0LL;
        QTest::newRow("True") << "True"_ba << true << 0LL;
        QTest::newRow("1") << "1"_ba << true << 1LL;
        QTest::newRow("false") << "false"_ba << false << 0LL;
        QTest::newRow("0") << "0"_ba << false << 0LL;
        QTest::newRow("2") << "2"_ba << false << 2LL;
        QTest::newRow("word") << "many"_ba << false << 0LL;
        QTest::newRow("number and word") << "12 items"_ba << false << 0LL;
        QTest::newRow("too large") << "99999999999999999999"_ba << false << 0LL;
        QTest::newRow("list") << "1, 2"_ba << false << 0LL;
        QTest::newRow("nothing") << ""_ba << false << 0LL;
    }

    void readsWhatPeopleWrite()
    {
        QFETCH(QByteArray, written);
        QFETCH(bool, boolean);
        QFETCH(qint64, integer);
        // QSettings knows a file by its path, size and time of change, and these rows follow within one tick.
        m_path = m_folder.filePath("%1.conf"_L1.arg(QLatin1StringView(QTest::currentDataTag())));
        store("key=" + written + "\n");
        QSettingsDefaults defaults(m_path);
        // A default must not shine through a value that cannot be read.
        defaults.registerDefaults({ { u"key"_s, 7 } });
        QCOMPARE(defaults.boolean(u"key"), boolean);
        QCOMPARE(defaults.integer(u"key"), integer);
    }

    void onlyTheUserCanReadTheFile_data()
    {
        QTest::addColumn<bool>("existed");
        QTest::newRow("new file") << false;
        QTest::newRow("file of a wider mode") << true;
    }

    void onlyTheUserCanReadTheFile()
    {
        QFETCH(bool, existed);
        m_path = m_folder.filePath(existed ? u"wide.conf"_s : u"new/folder/new.conf"_s);
        if (existed) {
            store("language=uk\n");
            QFile::setPermissions(m_path, QFile::Permissions(0x6644));
        }
        QSettingsDefaults(m_path).set(u"language", u"en"_s);
        QFile file(m_path);
        QCOMPARE(file.permissions() & QFile::Permissions(0x0077), QFile::Permissions());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "[General]\nlanguage=en\n"_ba);
    }
};

QTEST_GUILESS_MAIN(QSettingsDefaultsTest)
#include "QSettingsDefaultsTest.moc"
