#include "macos/media/MacMusicApp.h"

#include "macos/applications/PictureOf.h"

#include <AppKit/AppKit.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr QStringView music = u"com.apple.Music";
constexpr int largestIcon = 128;

} // namespace

MacMusicApp::MacMusicApp()
    : m_playerInfo(Observation::Centre::Distributed, u"com.apple.Music.playerInfo"_s,
        [this] { Q_EMIT playerInfoChanged(); })
    , m_terminated(Observation::Centre::Workspace,
          QString::fromNSString(NSWorkspaceDidTerminateApplicationNotification),
          [this](const QString& program) {
              if (program == music)
                  Q_EMIT terminated();
          })
{
}

std::optional<MusicApp::Running> MacMusicApp::running() const
{
    auto* const application =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:music.toString().toNSString()]
            .firstObject;
    if (!application)
        return {};
    return Running { application.processIdentifier, QString::fromNSString(application.localizedName),
        pictureOf(application.icon, largestIcon) };
}

} // namespace nimbarrow
