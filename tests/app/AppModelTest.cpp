#include "app/AppModel.h"

#include "notch/NotchController.h"
#include "platform/Platform.h"
#include "preferences/L10n.h"
#include "support/FakeAdapter.h"
#include "support/FakeCalendarStore.h"
#include "support/FakeDesktop.h"
#include "support/FakeMusicApp.h"
#include "support/FakePasteboard.h"
#include "support/FakePowerAssertions.h"
#include "support/FakeScreenshots.h"
#include "support/FakeScripting.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"
#include "support/Test.h"

namespace {

/// Makes the port and keeps a look at the double behind it.
template <typename Fake, typename PortPointer>
Fake& give(PortPointer& port)
{
    auto fake = std::make_unique<Fake>();
    auto& reference = *fake;
    port = std::move(fake);
    return reference;
}

/// The model and the controller as the program links them, over doubles of the whole system.
struct Program {
    QTemporaryDir disk;
    ManualTime time;
    Platform platform;
    FakeUserDefaults& defaults = give<FakeUserDefaults>(platform.userDefaults);
    FakeHotKeys& hotKeys = give<FakeHotKeys>(platform.hotKeys);
    FakePasteboard& pasteboard = give<FakePasteboard>(platform.pasteboard);
    FakeKeystrokes& keystrokes = give<FakeKeystrokes>(platform.keystrokes);
    FakeTrust& trust = give<FakeTrust>(platform.accessibilityTrust);
    FakeScreens& screens = give<FakeScreens>(platform.screens);
    FakeSessionLock& sessionLock = give<FakeSessionLock>(platform.sessionLock);
    FakePanelWindow window;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<NotchController> notch;

    Program()
    {
        give<FakeLocations>(platform.locations).folder = disk.path();
        give<ManualTime>(platform.clock);
        give<ManualTime>(platform.scheduler);
        give<ManualQueues>(platform.workQueues);
        give<FakeDesktopPreferences>(platform.desktopPreferences);
        give<FakeLoginItem>(platform.loginItem);
        give<FakeOpener>(platform.opener);
        give<FakeCalendarStore>(platform.calendarStore);
        give<FakeScripting>(platform.scripting);
        give<FakeAdapterCommand>(platform.adapterCommand);
        give<FakeAdapterProcesses>(platform.adapterProcesses);
        give<FakeMusicApp>(platform.musicApp);
        give<FakePowerAssertions>(platform.powerAssertions);
        give<FakeSharePicker>(platform.sharePicker);
        give<FakeFolderEvents>(platform.folderEvents);
        give<FakeScreenshotFolder>(platform.screenshotFolder);
        give<FakePointer>(platform.pointer);
        give<FakeApplications>(platform.applications);
        screens.plugIn({ FakeScreens::notched() });
    }

    void start()
    {
        model = std::make_unique<AppModel>(platform);
        notch = std::make_unique<NotchController>(NotchServices { screens, sessionLock, *platform.pointer,
            window, *platform.applications, keystrokes, *platform.scheduler, model->settings(),
            model->store(), model->clipboard(), model->capture(), model->paster() });
        model->start(*notch);
        notch->start();
    }

    void copy(const QString& text) const
    {
        FakePasteboard::Content content;
        content.string = text;
        pasteboard.copy(content);
    }
};

} // namespace

class AppModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void announcesWhatIsCopied()
    {
        Program program;
        program.start();
        program.copy(u"copied"_s);
        QCOMPARE(program.notch->state().peek()->line, u"copied"_s);
    }

    void dropsEntriesWhenTheLimitFalls()
    {
        Program program;
        program.start();
        for (int i = 0; i < 30; ++i)
            program.copy(QString::number(i));
        program.model->settings().setHistoryLimit(12);
        QCOMPARE(program.model->store().items().size(), 12);
        program.model->settings().setHistoryLimit(3);
        QCOMPARE(program.model->store().items().size(), 10);
    }

    void leavesToTheUserWhatItMayNotPaste()
    {
        for (const auto fromKeyboard : { false, true }) {
            Program program;
            program.trust.trusted = false;
            program.defaults.values.insert(u"pasteOnClick"_s, true);
            program.start();
            program.copy(u"older"_s);
            program.copy(u"newer"_s);
            // Nobody is asked a second time, and it is said again.
            for (auto time = 0; time < 2; ++time) {
                program.hotKeys.press();
                QCOMPARE(program.notch->state().mode(), NotchState::Expanded);
                program.model->paster().paste(program.model->store().items().at(1), fromKeyboard);
                QCoreApplication::processEvents();
                QCOMPARE(program.pasteboard.content.string, u"older"_s);
                QCOMPARE(program.keystrokes.pastes, 0);
                QCOMPARE(program.trust.prompts, 1);
                QCOMPARE(program.notch->state().mode(), NotchState::Peek);
                QVERIFY(!program.notch->state().keyboardMode());
                QCOMPARE(program.notch->state().peek()->line, L10n::text(L10n::Key::PressPaste));
            }

            // What was only to be copied is nobody's business.
            program.hotKeys.press();
            program.model->settings().setPasteOnClick(false);
            program.model->paster().paste(program.model->store().items().at(1), false);
            QCoreApplication::processEvents();
            QCOMPARE(program.notch->state().mode(), NotchState::Expanded);
        }
    }

    void tellsThatNothingOpensSomething()
    {
        Program program;
        program.start();
        auto& opener = *program.platform.opener;
        Q_EMIT opener.failed(QUrl(u"https://example.org/"_s));
        QCOMPARE(program.notch->state().peek()->line, L10n::text(L10n::Key::NothingOpensIt));

        // While the surface is open there is no room; the notice comes when it has closed.
        program.hotKeys.press();
        Q_EMIT opener.failed(QUrl(u"https://example.org/"_s));
        QCOMPARE(program.notch->state().mode(), NotchState::Expanded);
        program.hotKeys.press();
        QCoreApplication::processEvents();
        QCOMPARE(program.notch->state().mode(), NotchState::Peek);
    }

    void outlivesItsController()
    {
        Program program;
        program.start();
        program.notch.reset();
        program.copy(u"copied"_s);
        program.hotKeys.press();
        program.model->settings().setPasteOnClick(true);
        QVERIFY(program.model->handoff().paste(program.model->store().items().first().id));
        QCOMPARE(program.keystrokes.pastes, 1);
    }
};

QTEST_GUILESS_MAIN(AppModelTest)
#include "AppModelTest.moc"
