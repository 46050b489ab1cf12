#include "linux/display/DisplayChoice.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QString nameOf(const QString& platform)
{
    return platform.section(u':', 0, 0);
}

bool isWayland(const QString& platform)
{
    return nameOf(platform) == "wayland"_L1 || nameOf(platform) == "wayland-egl"_L1;
}

bool isX11(const QString& platform)
{
    return nameOf(platform) == "xcb"_L1;
}

bool canWork(const QString& platform, const DisplayFacts& facts)
{
    return (isWayland(platform) && facts.waylandHasLayerShell) || (isX11(platform) && facts.x11Answers());
}

QString waylandObstacle(const DisplayFacts& facts)
{
    if (facts.waylandAnswers)
        return u"The compositor %1 has no layer shell, so the panel cannot stand above other windows"_s.arg(
            facts.waylandDisplay);
    return facts.waylandDisplay.isEmpty() ? u"WAYLAND_DISPLAY is not set"_s
                                          : u"The compositor %1 does not answer"_s.arg(facts.waylandDisplay);
}

QString x11Obstacle(const DisplayFacts& facts)
{
    return facts.x11Display.isEmpty() ? u"DISPLAY is not set"_s
                                      : u"The display %1 cannot be opened"_s.arg(facts.x11Display);
}

QString obstacle(const QStringList& requested, const DisplayFacts& facts)
{
    if (requested.size() == 1 && isWayland(requested.first()))
        return u"%1. It cannot run with QT_QPA_PLATFORM=%2."_s.arg(waylandObstacle(facts), facts.requested);
    if (requested.size() == 1 && isX11(requested.first()))
        return u"%1."_s.arg(x11Obstacle(facts));
    if (!facts.requested.isEmpty())
        return u"It needs a Wayland compositor or an X server and cannot run with QT_QPA_PLATFORM=%1."_s.arg(
            facts.requested);
    if (facts.waylandDisplay.isEmpty() && facts.x11Display.isEmpty())
        return u"There is no display: neither WAYLAND_DISPLAY nor DISPLAY is set."_s;
    if (facts.waylandDisplay.isEmpty())
        return u"%1."_s.arg(x11Obstacle(facts));
    return u"%1, and %2."_s.arg(waylandObstacle(facts), x11Obstacle(facts));
}

} // namespace

DisplayChoice chooseDisplay(const DisplayFacts& facts)
{
    const auto requested = facts.requested.split(u';', Qt::SkipEmptyParts);
    const auto candidates = requested.isEmpty() ? QStringList { u"wayland"_s, u"xcb"_s } : requested;
    for (const auto& platform : candidates) {
        if (!canWork(platform, facts))
            continue;
        if (isWayland(platform))
            return { DisplaySystem::Wayland, platform, {} };
        return { facts.waylandAnswers ? DisplaySystem::XWayland : DisplaySystem::X11, platform, {} };
    }
    return { DisplaySystem::X11, {}, obstacle(requested, facts) };
}

} // namespace nimbarrow
