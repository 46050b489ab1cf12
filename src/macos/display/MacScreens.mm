#include "macos/display/MacScreens.h"

#include "macos/display/ScreenFacts.h"
#include "macos/display/ScreenRects.h"

#include <AppKit/AppKit.h>
#include <chrono>

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

/// One change of the set-up is told many times, the first time before the screens have their places.
constexpr auto settling = 100ms;

Screen described(NSScreen* screen)
{
    const ScreenFacts facts { QString::fromNSString(screen.localizedName), screenRectOf(screen.frame),
        screen.safeAreaInsets.top, screenRectOf(screen.auxiliaryTopLeftArea),
        screenRectOf(screen.auxiliaryTopRightArea) };
    return facts.screen();
}

} // namespace

MacScreens::MacScreens()
    : m_last(screens())
    , m_parameters(Observation::Centre::Application,
          QString::fromNSString(NSApplicationDidChangeScreenParametersNotification),
          [this] { m_settled.start(); })
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(settling);
    connect(&m_settled, &QTimer::timeout, this, [this] { compare(); });
}

QList<Screen> MacScreens::screens() const
{
    QList<Screen> all;
    for (NSScreen* screen in NSScreen.screens)
        all << described(screen);
    return all;
}

void MacScreens::compare()
{
    // Colours and the Dock are told of, too.
    auto now = screens();
    if (now == m_last)
        return;
    m_last = std::move(now);
    Q_EMIT changed();
}

} // namespace nimbarrow
