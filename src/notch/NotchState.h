#pragma once

#include "notch/NotchGeometry.h"
#include "notch/PeekContent.h"

#include <QObject>
#include <QSizeF>
#include <QUuid>
#include <qqmlintegration.h>

#include <optional>

namespace nimbarrow {

/// What the surface over the notch shows now. The controller writes it and the views read it; the views flip
/// only `showSettings` and `calendarExpanded`.
class NotchState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the controller")
    Q_PROPERTY(nimbarrow::NotchState::Mode mode READ mode NOTIFY modeChanged FINAL)
    Q_PROPERTY(bool hasNotch READ hasNotch NOTIFY geometryChanged FINAL)
    /// Size of the notch in points; 0 x 0 without one.
    Q_PROPERTY(QSizeF notchSize READ notchSize NOTIFY geometryChanged FINAL)
    /// How much larger the notch is than any that the surface is drawn for, in points.
    Q_PROPERTY(QSizeF notchSurplus READ notchSurplus NOTIFY geometryChanged FINAL)
    /// Size of the expanded surface in points.
    Q_PROPERTY(QSizeF expandedSize READ expandedSize NOTIFY expandedSizeChanged FINAL)
    Q_PROPERTY(bool calendarExpanded READ calendarExpanded NOTIFY calendarExpandedChanged FINAL)
    Q_PROPERTY(bool hasPeek READ hasPeek NOTIFY peekChanged FINAL)
    Q_PROPERTY(nimbarrow::PeekContent peek READ peekOrEmpty NOTIFY peekChanged FINAL)
    Q_PROPERTY(bool showSettings READ showSettings NOTIFY showSettingsChanged FINAL)
    /// What is dragged over the notch would be taken.
    Q_PROPERTY(bool dropTargeted READ dropTargeted NOTIFY dropTargetedChanged FINAL)
    /// Identifier of the entry in the large preview; null when it is closed.
    Q_PROPERTY(QUuid preview READ preview NOTIFY previewChanged FINAL)
    Q_PROPERTY(bool hasPreview READ hasPreview NOTIFY previewChanged FINAL)
    /// Size of the large preview in points.
    Q_PROPERTY(QSizeF previewSize READ previewSize CONSTANT FINAL)
    Q_PROPERTY(bool keyboardMode READ keyboardMode NOTIFY keyboardModeChanged FINAL)
    /// Identifier of the entry selected from the keyboard; null when there is none.
    Q_PROPERTY(QUuid selection READ selection NOTIFY selectionChanged FINAL)

public:
    /// The notch alone, a notice beside it, or the whole surface.
    enum Mode { Collapsed, Peek, Expanded };
    Q_ENUM(Mode)

    using QObject::QObject;

    [[nodiscard]] Mode mode() const { return m_mode; }
    [[nodiscard]] const std::optional<NotchGeometry>& geometry() const { return m_geometry; }
    [[nodiscard]] bool hasNotch() const { return m_geometry.has_value(); }
    [[nodiscard]] QSizeF notchSize() const;
    [[nodiscard]] QSizeF notchSurplus() const { return m_geometry ? m_geometry->surplus() : QSizeF(0, 0); }
    [[nodiscard]] QSizeF expandedSize() const { return m_expandedSize; }
    [[nodiscard]] bool calendarExpanded() const { return m_calendarExpanded; }
    [[nodiscard]] const std::optional<PeekContent>& peek() const { return m_peek; }
    [[nodiscard]] bool hasPeek() const { return m_peek.has_value(); }
    [[nodiscard]] bool showSettings() const { return m_showSettings; }
    [[nodiscard]] bool dropTargeted() const { return m_dropTargeted; }
    [[nodiscard]] QUuid preview() const { return m_preview; }
    [[nodiscard]] bool hasPreview() const { return !m_preview.isNull(); }
    [[nodiscard]] static QSizeF previewSize() { return { 760, 480 }; }
    [[nodiscard]] bool keyboardMode() const { return m_keyboardMode; }
    [[nodiscard]] QUuid selection() const { return m_selection; }

    void setMode(Mode mode);
    void setGeometry(const std::optional<NotchGeometry>& geometry);
    void setExpandedSize(QSizeF size);
    Q_INVOKABLE void setCalendarExpanded(bool expanded);
    void setPeek(const std::optional<PeekContent>& peek);
    Q_INVOKABLE void setShowSettings(bool show);
    void setDropTargeted(bool targeted);
    void setPreview(const QUuid& item);
    void setKeyboardMode(bool on);
    void setSelection(const QUuid& item);

Q_SIGNALS:
    void modeChanged();
    void geometryChanged();
    void expandedSizeChanged();
    void calendarExpandedChanged();
    void peekChanged();
    void showSettingsChanged();
    void dropTargetedChanged();
    void previewChanged();
    void keyboardModeChanged();
    void selectionChanged();

private:
    template <typename T>
    void assign(T& field, const T& value, void (NotchState::*changed)());
    [[nodiscard]] PeekContent peekOrEmpty() const { return m_peek.value_or(PeekContent()); }

    Mode m_mode = Collapsed;
    std::optional<NotchGeometry> m_geometry;
    QSizeF m_expandedSize { 460, 258 };
    bool m_calendarExpanded = false;
    std::optional<PeekContent> m_peek;
    bool m_showSettings = false;
    bool m_dropTargeted = false;
    QUuid m_preview;
    bool m_keyboardMode = false;
    QUuid m_selection;
};

} // namespace nimbarrow
