#include "notch/NotchPanel.h"

#include "platform/PanelWindow.h"

namespace nimbarrow {

namespace {

// A notice hangs 150 points out on either side of the notch, with room for the flares of its outline.
constexpr double peekExtraWidth = 300 + 8;
constexpr double peekHeight = 60;

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

ScreenRect NotchPanel::frameFor(NotchState::Mode mode, const NotchGeometry& geometry, QSizeF expandedSize)
{
    switch (mode) {
    case NotchState::Collapsed: break;
    case NotchState::Peek:
        return geometry.hangingFrame(geometry.notchRect.width + peekExtraWidth, peekHeight);
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
