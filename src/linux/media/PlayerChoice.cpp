#include "linux/media/PlayerChoice.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

using Playback = PlayerReading::Playback;

constexpr auto prefix = "org.mpris.MediaPlayer2."_L1;
constexpr auto integration = "plasma-browser-integration"_L1;

/// The first word after the prefix: an instance number may follow.
QString program(const QString& service)
{
    return service.mid(prefix.size()).section(u'.', 0, 0).toLower();
}

bool isBrowser(const QString& service)
{
    static const QStringList browsers { u"brave"_s, u"chrome"_s, u"chromium"_s, u"edge"_s, u"firefox"_s,
        u"google-chrome"_s, u"librewolf"_s, u"microsoft-edge"_s, u"opera"_s, u"vivaldi"_s };
    return browsers.contains(program(service));
}

} // namespace

bool isPlayerName(const QString& service)
{
    if (!service.startsWith(prefix))
        return false;
    const auto name = program(service);
    return !name.isEmpty() && name != "playerctld"_L1 && name != "kdeconnect"_L1 && name != "gsconnect"_L1;
}

QString choosePlayer(const QList<PlayerCandidate>& candidates, const QString& current)
{
    QStringList integratedTitles;
    for (const auto& candidate : candidates) {
        if (candidate.playback != Playback::Stopped && program(candidate.service) == integration)
            integratedTitles += candidate.title;
    }

    const PlayerCandidate* best = nullptr;
    for (const auto& candidate : candidates) {
        if (candidate.playback == Playback::Stopped)
            continue;
        // The same tab twice: the integration knows the artwork and the tab's own controls.
        if (isBrowser(candidate.service) && integratedTitles.contains(candidate.title))
            continue;
        const auto rank = [&current](const PlayerCandidate& one) {
            const bool plays = one.playback == Playback::Playing;
            const bool stays = !plays && one.service == current;
            return std::tuple(plays, stays, one.started);
        };
        if (!best || rank(candidate) > rank(*best))
            best = &candidate;
    }
    return best ? best->service : QString();
}

} // namespace nimbarrow
