#pragma once

#include <QObject>

class QQuickItem;
class QQuickWindow;

namespace nimbarrow {

/// Which control of the surface the Tab key has reached, if it has reached one. A control that is no longer
/// to be seen loses it: nobody can know what a key would do there.
class ControlFocus final : public QObject {
    Q_OBJECT

public:
    /// The window outlives the object.
    explicit ControlFocus(QQuickWindow& window, QObject* parent = nullptr);

    [[nodiscard]] bool isOnControl() const { return m_control != nullptr; }

    /// No control has the keys any more. What asks a question above everything else keeps them.
    void drop();

Q_SIGNALS:
    /// A control has the keys now.
    void reached();

private:
    void follow();

    QQuickWindow& m_window;
    QQuickItem* m_control = nullptr;
};

} // namespace nimbarrow
