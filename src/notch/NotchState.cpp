#include "notch/NotchState.h"

namespace nimbarrow {

template <typename T>
void NotchState::assign(T& field, const T& value, void (NotchState::*changed)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*changed)();
}

QSizeF NotchState::notchSize() const
{
    return m_geometry ? QSizeF(m_geometry->notchRect.width, m_geometry->notchRect.height) : QSizeF(0, 0);
}

void NotchState::setMode(Mode mode)
{
    assign(m_mode, mode, &NotchState::modeChanged);
}

void NotchState::setGeometry(const std::optional<NotchGeometry>& geometry)
{
    assign(m_geometry, geometry, &NotchState::geometryChanged);
}

void NotchState::setExpandedSize(QSizeF size)
{
    assign(m_expandedSize, size, &NotchState::expandedSizeChanged);
}

void NotchState::setCalendarExpanded(bool expanded)
{
    assign(m_calendarExpanded, expanded, &NotchState::calendarExpandedChanged);
}

void NotchState::setPeek(const std::optional<PeekContent>& peek)
{
    assign(m_peek, peek, &NotchState::peekChanged);
}

void NotchState::setShowSettings(bool show)
{
    assign(m_showSettings, show, &NotchState::showSettingsChanged);
}

void NotchState::setDropTargeted(bool targeted)
{
    assign(m_dropTargeted, targeted, &NotchState::dropTargetedChanged);
}

void NotchState::setPreview(const QUuid& item)
{
    assign(m_preview, item, &NotchState::previewChanged);
}

void NotchState::setKeyboardMode(bool on)
{
    assign(m_keyboardMode, on, &NotchState::keyboardModeChanged);
}

void NotchState::setSelection(const QUuid& item)
{
    assign(m_selection, item, &NotchState::selectionChanged);
}

} // namespace nimbarrow
