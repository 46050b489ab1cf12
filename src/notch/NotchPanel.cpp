#include "notch/NotchPanel.h"

#include "platform/PanelWindow.h"

#include <algorithm>
#include <cmath>

namespace nimbarrow {

namespace {

// A notice hangs 150 points out on either side of the notch, with room for the flares of its outline.
constexpr double peekExtraWidth = 300 + 8;
constexpr double peekHeight = 60;
// How far a notice hangs below the notch.
constexpr double peekBelow = 6;

constexpr double expandedWidth = 460;
constexpr double heightWithoutCalendar = 240;
constexpr double heightWithFoldedCalendar = 258;
constexpr double heightWithUnfoldedCalendar = 322;

} // namespace

NotchPanel::NotchPanel(PanelWindow& window, QObject* parent)
    : QObject(parent)
    , m_window(window)
{
}

void NotchPanel::setFrame(const ScreenRect& frame)
{
    if (frame == m_frame)
        return;
    m_frame = frame;
    m_window.setFrame(frame);
}

void NotchPanel::orderFront()
{
    m_window.orderFront();
}

void NotchPanel::orderOut()
{
    m_window.orderOut();
}

QSizeF NotchPanel::expandedSize(const NotchGeometry& geometry, bool hasCalendar, bool isUnfolded)
{
    const auto height = !hasCalendar ? heightWithoutCalendar
        : isUnfolded                 ? heightWithUnfoldedCalendar
                                     : heightWithFoldedCalendar;
    return QSizeF(expandedWidth, height) + geometry.surplus();
}

ScreenRect NotchPanel::frameFor(NotchState::Mode mode, const NotchGeometry& geometry, QSizeF expandedSize)
{
    switch (mode) {
    case NotchState::Collapsed: break;
    case NotchState::Peek:
        return geometry.hangingFrame(geometry.notchRect.width + peekExtraWidth,
            std::max(peekHeight, std::ceil(geometry.notchRect.height + peekBelow)));
    case NotchState::Expanded: return geometry.hangingFrame(expandedSize.width(), expandedSize.height());
    }
    return geometry.notchRect;
}

ScreenRect NotchPanel::previewFrame(const NotchGeometry& geometry)
{
    const auto size = NotchState::previewSize();
    return geometry.hangingFrame(size.width(), size.height());
}

} // namespace nimbarrow
