#include "app/AppModel.h"

#include "notch/NotchController.h"
#include "platform/Platform.h"
#include "preferences/L10n.h"

#include <QRandomGenerator>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

AppModel::AppModel(const Platform& platform, QObject* parent)
    : QObject(parent)
    , m_opener(*platform.opener)
    , m_pasteboard(*platform.pasteboard)
    , m_defaults(*platform.userDefaults)
    , m_hotKeys(*platform.hotKeys)
    , m_about(*platform.opener, platform.capabilities)
    , m_settings(*platform.userDefaults, *platform.loginItem, *platform.accessibilityTrust,
          *platform.desktopPreferences, *platform.scheduler)
    , m_player({ *platform.applications, *platform.adapterCommand, *platform.adapterProcesses,
          *platform.musicApp, *platform.scripting, *platform.workQueues, *platform.scheduler, *platform.clock,
          m_settings.fetchArtwork() })
    , m_keepAwake(*platform.powerAssertions, *platform.clock, *platform.scheduler)
    , m_owl(*platform.clock, *platform.scheduler, [] { return QRandomGenerator::global()->generateDouble(); })
    , m_calendar(*platform.calendarStore, *platform.opener, *platform.scripting, *platform.clock,
          *platform.scheduler, *platform.workQueues)
    , m_timeline(m_calendar, *platform.clock, *platform.scheduler, *platform.opener)
    , m_thumbnails(*platform.workQueues)
    , m_store(m_settings, *platform.locations, *platform.clock, *platform.scheduler, *platform.workQueues)
    , m_capture(m_store, *platform.workQueues)
    , m_clipboard(m_capture, *platform.pasteboard, *platform.applications, *platform.scheduler)
    , m_paster(m_clipboard, m_settings, *platform.accessibilityTrust, *platform.keystrokes)
    , m_handoff(m_store, m_paster, *platform.opener, *platform.sharePicker)
    , m_screenshots(m_store, *platform.folderEvents, *platform.screenshotFolder, *platform.clock,
          *platform.scheduler, *platform.workQueues)
{
}

void AppModel::start(NotchController& notch)
{
    const QPointer<NotchController> controller(&notch);

    m_store.onNewItem = [this, controller](const ClipboardItem& item) {
        if (controller && m_settings.peekOnClipboard())
            controller->peek(PeekContent::forItem(item));
    };
    m_player.onTrackChanged = [this, controller](const NowPlayingTrack& track, const QImage& artwork) {
        if (controller && m_settings.peekOnTrackChange())
            controller->peek(PeekContent::forTrack(track, artwork));
    };
    m_keepAwake.onExpired = [controller] {
        if (controller)
            controller->peek(
                PeekContent::make(u"cup.and.saucer"_s, L10n::text(L10n::Key::SleepAllowedAgain)));
    };
    connect(&m_store, &ClipboardStore::imagesDropped, &m_thumbnails, &ThumbnailLoader::forget);
    connect(&m_settings, &Settings::watchScreenshotsChanged, this, &AppModel::applyWatchScreenshots);
    connect(&m_settings, &Settings::historyLimitChanged, &m_store, &ClipboardStore::enforceLimit);
    const auto showNotice = [this, controller] {
        if (controller && m_notice && controller->state().mode() == NotchState::Collapsed)
            controller->peek(*std::exchange(m_notice, {}));
    };
    connect(&notch.state(), &NotchState::modeChanged, this, showNotice, Qt::QueuedConnection);
    // There is no room for a notice while the surface is open, from which most is opened. So it waits.
    connect(&m_opener, &Opener::failed, this, [this, showNotice] {
        m_notice = PeekContent::make(u"arrow.up.forward.app"_s, L10n::text(L10n::Key::NothingOpensIt));
        showNotice();
    });
    connect(&m_paster, &Paster::leftToUser, this, [this, controller, showNotice] {
        m_notice = PeekContent::make(u"doc.on.doc"_s, L10n::text(L10n::Key::PressPaste));
        if (controller)
            controller->actions().collapse();
        showNotice();
    });
    m_paster.deliverPaste = [controller, deliverAtOnce = m_paster.deliverPaste] {
        if (controller)
            controller->keyboard().deliverPaste();
        else
            deliverAtOnce();
    };
    connect(&m_settings, &Settings::hotKeyEnabledChanged, this,
        [this, controller] { applyHotKeyEnabled(controller); });
    applyHotKeyEnabled(controller);
    notch.onExpand = [this] {
        m_player.refresh();
        m_calendar.refresh();
    };
    notch.keyboard().onPlayPause = [this] { m_player.playPause(); };
    connect(&m_settings, &Settings::showCalendarChanged, this, &AppModel::applyShowCalendar);
    applyShowCalendar();
    m_clipboard.start();
    applyWatchScreenshots();
    m_player.start();
}

void AppModel::save()
{
    m_store.flush();
    m_defaults.flush();
}

void AppModel::end()
{
    // First, for who ends the program may have little patience.
    save();
    m_keepAwake.deactivate();
    m_pasteboard.handOver();
}

void AppModel::applyShowCalendar()
{
    if (m_settings.showCalendar())
        m_calendar.start();
    else
        m_calendar.stop();
}

void AppModel::applyWatchScreenshots()
{
    if (m_settings.watchScreenshots())
        m_screenshots.start();
    else
        m_screenshots.stop();
}

void AppModel::applyHotKeyEnabled(const QPointer<NotchController>& controller)
{
    m_hotKey.reset();
    if (m_settings.hotKeyEnabled()) {
        // Where another program holds the combination it stays without effect.
        m_hotKey = m_hotKeys.registerKey(Key::V, KeyModifier::Command | KeyModifier::Shift, [controller] {
            if (controller)
                controller->toggleKeyboard();
        });
    }
    m_about.refresh();
}

} // namespace nimbarrow
