#pragma once

#include "notch/NotchGeometry.h"
#include "notch/NotchState.h"

#include <QObject>

namespace nimbarrow {

class PanelWindow;

/// The panel over the notch: which frame each mode has.
class NotchPanel final : public QObject {
    Q_OBJECT

public:
    /// The window outlives the panel.
    explicit NotchPanel(PanelWindow& window, QObject* parent = nullptr);

    void setFrame(const ScreenRect& frame);
    [[nodiscard]] const ScreenRect& frame() const { return m_frame; }
    void orderFront();
    void orderOut();

    /// The size of the grown surface in points.
    [[nodiscard]] static QSizeF expandedSize(
        const NotchGeometry& geometry, bool hasCalendar, bool isUnfolded);
    /// The frame of a mode; `expandedSize` in points.
    [[nodiscard]] static ScreenRect frameFor(
        NotchState::Mode mode, const NotchGeometry& geometry, QSizeF expandedSize);
    /// The frame while the large preview is open.
    [[nodiscard]] static ScreenRect previewFrame(const NotchGeometry& geometry);

private:
    PanelWindow& m_window;
    ScreenRect m_frame;
};

} // namespace nimbarrow
