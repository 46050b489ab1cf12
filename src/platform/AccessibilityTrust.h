#pragma once

#include <QObject>

namespace nimbarrow {

/// Port: whether the system lets the program type for the user.
class AccessibilityTrust : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual bool isTrusted() const = 0;

    /// Shows the system's own way to grant it; returns at once.
    virtual void prompt() = 0;

Q_SIGNALS:
    /// The user may have granted or withdrawn it; the new answer may take the system a moment.
    void changed();
};

} // namespace nimbarrow
