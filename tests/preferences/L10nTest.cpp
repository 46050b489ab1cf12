#include "preferences/L10n.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

class L10nTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { L10n::setCurrent(L10n::English); }

    void resolvesTheSystemsLanguage_data()
    {
        QTest::addColumn<QStringList>("preferred");
        QTest::addColumn<L10n::Resolved>("resolved");
        QTest::newRow("Ukrainian") << QStringList { u"uk-UA"_s, u"en"_s } << L10n::Ukrainian;
        QTest::newRow("in capitals") << QStringList { u"UK"_s } << L10n::Ukrainian;
        QTest::newRow("Ukrainian second") << QStringList { u"ru-UA"_s, u"uk"_s } << L10n::English;
        QTest::newRow("none") << QStringList {} << L10n::English;
    }

    void resolvesTheSystemsLanguage()
    {
        QFETCH(const QStringList, preferred);
        QFETCH(const L10n::Resolved, resolved);
        QCOMPARE(L10n::resolve(Language::System, preferred), resolved);
        QCOMPARE(L10n::resolve(Language::Uk, preferred), L10n::Ukrainian);
        QCOMPARE(L10n::resolve(Language::En, preferred), L10n::English);
    }

    void countsFilesInBothLanguages_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("ukrainian");
        QTest::newRow("0") << 0 << u"0 files"_s << u"0 файлів"_s;
        QTest::newRow("1") << 1 << u"1 file"_s << u"1 файл"_s;
        QTest::newRow("2") << 2 << u"2 files"_s << u"2 файли"_s;
        QTest::newRow("4") << 4 << u"4 files"_s << u"4 файли"_s;
        QTest::newRow("5") << 5 << u"5 files"_s << u"5 файлів"_s;
        QTest::newRow("11") << 11 << u"11 files"_s << u"11 файлів"_s;
        QTest::newRow("14") << 14 << u"14 files"_s << u"14 файлів"_s;
        QTest::newRow("21") << 21 << u"21 files"_s << u"21 файл"_s;
        QTest::newRow("22") << 22 << u"22 files"_s << u"22 файли"_s;
        QTest::newRow("112") << 112 << u"112 files"_s << u"112 файлів"_s;
    }

    void countsFilesInBothLanguages()
    {
        QFETCH(const int, count);
        QFETCH(const QString, english);
        QFETCH(const QString, ukrainian);
        QCOMPARE(L10n::files(count), english);
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(L10n::files(count), ukrainian);
    }

    void switchesEveryTextAtOnce()
    {
        const QSignalSpy changed(&L10n::instance(), &L10n::currentChanged);
        QCOMPARE(L10n::text(L10n::Key::DropHere), u"Drop here"_s);
        L10n::setCurrent(L10n::Ukrainian);
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(L10n::text(L10n::Key::DropHere), u"Кинь сюди"_s);
        QCOMPARE(L10n::instance().texts().at(int(L10n::Key::NewEvent)), u"Нова подія"_s);
        QCOMPARE(L10n::open(u"Zoom"_s), u"Відкрити Zoom"_s);
    }

    void speaksTheSystemsWords()
    {
        using enum L10n::Key;
        const SystemWords elsewhere { u"Super+Shift+V"_s, u"/usr"_s, u"Settings"_s, u"Параметри"_s,
            u"computer"_s };
        const SystemWords home { u"⌘⇧V"_s, u"/Applications"_s, u"System Settings"_s,
            u"Системні параметри"_s };
        QCOMPARE(L10n::text(HotKey), u"⌘⇧V hot key"_s);
        L10n::setSystemWords(elsewhere);
        QCOMPARE(L10n::text(HotKey), u"Super+Shift+V hot key"_s);
        QCOMPARE(L10n::text(KeepAwake), u"Keep the computer awake"_s);
        QCOMPARE(L10n::text(OutsideApplicationsHint), u"Not running from /usr: login will open this copy"_s);
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(L10n::text(OpenSystemSettings), u"Відкрити Параметри"_s);
        L10n::setSystemWords(home);
        QCOMPARE(L10n::text(OpenSystemSettings), u"Відкрити Системні параметри"_s);
        for (const auto all = L10n::instance().texts(); const auto& text : all)
            QVERIFY2(!text.contains(u'{'), qUtf8Printable(text));
    }
};

QTEST_GUILESS_MAIN(L10nTest)
#include "L10nTest.moc"
