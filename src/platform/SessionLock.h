#pragma once

#include <QObject>

namespace nimbarrow {

/// Port: whether the session is locked or its screen saver runs, so that whoever looks at the screen may not
/// be the user.
class SessionLock : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual bool isLocked() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace nimbarrow
