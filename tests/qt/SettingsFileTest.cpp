#include "qt/SettingsFile.h"

#include "support/FileCalls.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <cerrno>

class SettingsFileTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_path;
    ManualQueues m_queues;
    ManualTime m_time;

    void store(const QByteArray& lines) const { writeFile(m_path, "[General]\n" + lines); }
    [[nodiscard]] QByteArray stored() const { return readFile(m_path); }

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
            SettingsFile defaults(m_path, m_queues, m_time);
            defaults.registerDefaults(registered);
            QCOMPARE(defaults.integer(u"historyLimit"), 100);
            QCOMPARE(defaults.string(u"language"), u"system"_s);
            QVERIFY(!QFile::exists(m_path));

            defaults.set(u"historyLimit", qint64(-5'000'000'000));
            defaults.set(u"pasteOnClick", true);
            QCOMPARE(defaults.integer(u"historyLimit"), -5'000'000'000);
        }
        SettingsFile again(m_path, m_queues, m_time);
        again.registerDefaults(registered);
        QCOMPARE(again.integer(u"historyLimit"), -5'000'000'000);
        QVERIFY(again.boolean(u"pasteOnClick"));
        QCOMPARE(again.string(u"language"), u"system"_s);

        QCOMPARE(stored(), "[General]\nhistoryLimit=-5000000000\npasteOnClick=true\n"_ba);
    }

    void readsWhatPeopleWrite()
    {
        const struct {
            QByteArray written;
            bool boolean;
            qint64 integer;
        } rows[] = { { "true", true, 0 }, { "True", true, 0 }, { "1", true, 1 }, { "false", false, 0 },
            { "0", false, 0 }, { "2", false, 2 }, { "many", false, 0 }, { "12 items", false, 0 },
            { "99999999999999999999", false, 0 }, { "1, 2", false, 0 }, { "", false, 0 } };
        for (const auto& row : rows) {
            m_path = m_folder.filePath(u"written.conf"_s);
            store("key=" + row.written + "\n");
            SettingsFile defaults(m_path, m_queues, m_time);
            // A default must not shine through a value that cannot be read.
            defaults.registerDefaults({ { u"key"_s, 7 } });
            QVERIFY2(defaults.boolean(u"key") == row.boolean, row.written.constData());
            QVERIFY2(defaults.integer(u"key") == row.integer, row.written.constData());
        }
    }

    void onlyTheUserCanReadTheFile()
    {
        for (const auto existed : { false, true }) {
            m_path = m_folder.filePath(existed ? u"wide.conf"_s : u"new/folder/new.conf"_s);
            if (existed) {
                store("language=uk\n");
                QFile::setPermissions(m_path, QFile::Permissions(0x6644));
            }
            SettingsFile(m_path, m_queues, m_time).set(u"language", u"en"_s);
            QCOMPARE(QFile(m_path).permissions() & QFile::Permissions(0x0077), QFile::Permissions());
            QCOMPARE(stored(), "[General]\nlanguage=en\n"_ba);
        }
    }

    void whatPeopleWroteAroundItStays()
    {
        m_path = m_folder.filePath(u"around.conf"_s);
        store("; mine\n language = uk \n\n[Other]\nlanguage=de\n");
        {
            SettingsFile defaults(m_path, m_queues, m_time);
            QCOMPARE(defaults.string(u"language"), u"uk"_s);
            defaults.set(u"language", u"en"_s);
            defaults.set(u"calendar", u"a \"b\\n\nї; c"_s);
        }
        QCOMPARE(stored(),
            "[General]\n; mine\nlanguage=en\ncalendar=\"a \\\"b\\\\n\\nї; c\"\n\n[Other]\nlanguage=de\n"_ba);
        QCOMPARE(SettingsFile(m_path, m_queues, m_time).string(u"calendar"), u"a \"b\\n\nї; c"_s);
    }

    void whatFindsNoRoomIsTriedAgain()
    {
        m_path = m_folder.filePath(u"full.conf"_s);
        store("language=uk\n");
        SettingsFile defaults(m_path, m_queues, m_time);
        const QSignalSpy changed(&defaults, &UserDefaults::isSavedChanged);
        {
            const FileCalls full(
                m_folder.path(), [](const char* name) { return name == "write"_ba ? ENOSPC : 0; });
            defaults.set(u"language", u"en"_s);
            defaults.set(u"historyLimit", 50LL);
            m_queues.runAll();
            QCOMPARE(stored(), "[General]\nlanguage=uk\n"_ba);
            QVERIFY(!defaults.isSaved());
            m_time.advance(10s);
            m_queues.runAll();
            QCOMPARE(changed.size(), 1);
        }
        m_time.advance(10s);
        m_queues.runAll();
        QVERIFY(defaults.isSaved());
        QCOMPARE(stored(), "[General]\nlanguage=en\nhistoryLimit=50\n"_ba);
        m_time.advance(10s);
        QCOMPARE(m_queues.waiting(), 0);
    }
};

QTEST_GUILESS_MAIN(SettingsFileTest)
#include "SettingsFileTest.moc"
