#include "preferences/L10n.h"

#include "support/Test.h"

class L10nTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { L10n::setCurrent(L10n::English); }

    void resolvesTheSystemsLanguage_data()
    {
        const Rows<QStringList, L10n::Resolved> row;
        row("Ukrainian", { u"uk-UA"_s, u"en"_s }, L10n::Ukrainian);
        row("in capitals", { u"UK"_s }, L10n::Ukrainian);
        row("Ukrainian second", { u"ru-UA"_s, u"uk"_s }, L10n::English);
        row("none", {}, L10n::English);
    }
    void resolvesTheSystemsLanguage()
    {
        const auto [preferred, resolved] = Rows<QStringList, L10n::Resolved>::current();
        QCOMPARE(L10n::resolve(Language::System, preferred), resolved);
        QCOMPARE(L10n::resolve(Language::Uk, preferred), L10n::Ukrainian);
        QCOMPARE(L10n::resolve(Language::En, preferred), L10n::English);
    }

    void countsFilesInBothLanguages()
    {
        QStringList counts;
        for (const auto count : { 0, 1, 2, 4, 5, 11, 14, 21, 22, 112 }) {
            L10n::setCurrent(L10n::English);
            counts << L10n::files(count);
            L10n::setCurrent(L10n::Ukrainian);
            counts << L10n::files(count);
        }
        QCOMPARE(counts.join(u", "_s),
            u"0 files, 0 файлів, 1 file, 1 файл, 2 files, 2 файли, 4 files, 4 файли, 5 files, 5 файлів, "
            "11 files, 11 файлів, 14 files, 14 файлів, 21 files, 21 файл, 22 files, 22 файли, "
            "112 files, 112 файлів"_s);
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
        const SystemWords elsewhere { u"Super+Shift+V"_s, u"Control-V"_s, u"/usr"_s, u"Settings"_s,
            u"Параметри"_s, u"computer"_s };
        const SystemWords home { u"⌘⇧V"_s, u"Command-V"_s, u"/Applications"_s, u"System Settings"_s,
            u"Системні параметри"_s };
        QCOMPARE(L10n::text(HotKey), u"⌘⇧V hot key"_s);
        L10n::setSystemWords(elsewhere);
        QCOMPARE(L10n::text(HotKey), u"Super+Shift+V hot key"_s);
        QCOMPARE(L10n::text(KeepAwake), u"Keep the computer awake"_s);
        QCOMPARE(L10n::text(OutsideApplicationsHint), u"Not running from /usr: login will open this copy"_s);
        L10n::setCurrent(L10n::Ukrainian);
        QCOMPARE(L10n::text(OpenSystemSettings), u"Відкрити Параметри"_s);
        QCOMPARE(L10n::text(PressPaste), u"Натисни Control-V"_s);
        L10n::setSystemWords(home);
        QCOMPARE(L10n::text(OpenSystemSettings), u"Відкрити Системні параметри"_s);
        for (const auto all = L10n::instance().texts(); const auto& text : all)
            QVERIFY2(!text.contains(u'{'), qUtf8Printable(text));
    }
};

QTEST_GUILESS_MAIN(L10nTest)
#include "L10nTest.moc"
