#include "preferences/Settings.h"

#include "preferences/L10n.h"
#include "support/FakeDesktop.h"
#include "support/ManualTime.h"
#include "support/Test.h"

namespace {

struct Fixture {
    FakeUserDefaults defaults;
    FakeLoginItem loginItem;
    FakeTrust trust;
    FakeDesktopPreferences desktop;
    ManualTime time;

    [[nodiscard]] std::unique_ptr<Settings> start()
    {
        return std::make_unique<Settings>(defaults, loginItem, trust, desktop, time);
    }
};

} // namespace

class SettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { L10n::setCurrent(L10n::English); }

    void startsWithTheDefaultsAndWritesNothing()
    {
        Fixture f;
        const auto settings = f.start();
        QVERIFY(settings->peekOnClipboard() && settings->peekOnTrackChange() && settings->watchScreenshots());
        QVERIFY(settings->hotKeyEnabled() && settings->showCalendar() && !settings->pasteOnClick());
        QVERIFY(settings->fetchArtwork());
        QCOMPARE(settings->historyLimit(), 100);
        QCOMPARE(settings->language(), Language::System);
        QVERIFY(f.defaults.values.isEmpty());
        f.defaults.values[u"fetchArtwork"_s] = false;
        QVERIFY(!f.start()->fetchArtwork());
    }

    void keepsEveryChoice()
    {
        Fixture f;
        {
            const auto settings = f.start();
            settings->setPeekOnClipboard(false);
            settings->setPeekOnTrackChange(false);
            settings->setWatchScreenshots(false);
            settings->setHistoryLimit(-3);
            settings->setHotKeyEnabled(false);
            settings->setShowCalendar(false);
            settings->setLanguage(Language::Uk);
            settings->setPasteOnClick(true);
            QVERIFY(!f.defaults.values.contains(u"pasteOnClick"_s));
            settings->applyPasteOnClick();
        }
        const QVariantMap expected {
            { u"peekOnClipboard"_s, false },
            { u"peekOnTrackChange"_s, false },
            { u"watchScreenshots"_s, false },
            { u"historyLimit"_s, qint64 { -3 } },
            { u"hotKeyEnabled"_s, false },
            { u"showCalendar"_s, false },
            { u"language"_s, u"uk"_s },
            { u"pasteOnClick"_s, true },
        };
        QCOMPARE(f.defaults.values, expected);
        const auto settings = f.start();
        QVERIFY(!settings->peekOnClipboard() && settings->pasteOnClick());
        QCOMPARE(settings->historyLimit(), -3);
        QCOMPARE(L10n::current(), L10n::Ukrainian);
    }

    void tellsWhatTheDiskDoesNotTake()
    {
        Fixture f;
        const auto settings = f.start();
        const QSignalSpy changed(settings.get(), &Settings::isSavedChanged);
        f.defaults.fail(true);
        QVERIFY(!settings->isSaved());
        QCOMPARE(changed.size(), 1);
    }

    void switchesTheLanguageAtOnce()
    {
        Fixture f;
        f.desktop.languages = { u"uk-UA"_s };
        f.defaults.values.insert(u"language"_s, u"de"_s);
        const auto settings = f.start();
        QCOMPARE(settings->language(), Language::System);
        QCOMPARE(L10n::current(), L10n::Ukrainian);
        QCOMPARE(f.defaults.values.value(u"language"_s), u"de"_s);
        settings->setLanguage(Language::En);
        QCOMPARE(L10n::current(), L10n::English);
        settings->setLanguage(Language::System);
        QCOMPARE(L10n::current(), L10n::Ukrainian);
        QCOMPARE(f.defaults.values.value(u"language"_s), u"system"_s);
    }

    void asksForTrustEachTimePasteOnClickIsSwitchedOn()
    {
        Fixture f;
        f.trust.trusted = false;
        const auto settings = f.start();
        for (const auto on : { true, false, true }) {
            settings->setPasteOnClick(on);
            settings->applyPasteOnClick();
        }
        QCOMPARE(f.trust.prompts, 2);

        f.trust.trusted = true;
        Q_EMIT f.trust.changed();
        f.time.advance(499ms);
        QVERIFY(!settings->accessibilityGranted());
        f.time.advance(1ms);
        QVERIFY(settings->accessibilityGranted());
        Q_EMIT f.trust.changed();
        settings->applyPasteOnClick();
        QCOMPARE(f.trust.prompts, 2);
    }

    void showsWhyTheLoginItemCouldNotBeChanged()
    {
        Fixture f;
        f.loginItem.enabled = true;
        f.loginItem.error = u"No space left"_s;
        const auto settings = f.start();
        QVERIFY(settings->launchAtLogin());
        settings->setLaunchAtLogin(false);
        settings->applyLaunchAtLogin();
        QCOMPARE(settings->launchAtLoginError(), u"No space left"_s);
        QVERIFY(!settings->launchAtLogin()); // what the user chose stays
        // Until the page is opened anew.
        settings->refreshLaunchAtLogin();
        QVERIFY(settings->launchAtLogin() && !settings->launchAtLoginError());
        settings->setLaunchAtLogin(false);
        settings->applyLaunchAtLogin();
        f.loginItem.error.reset();
        settings->applyLaunchAtLogin();
        QCOMPARE(settings->launchAtLoginError(), std::nullopt);
        QVERIFY(!f.loginItem.enabled);
    }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "SettingsTest.moc"
