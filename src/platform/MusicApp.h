#pragma once

#include <QImage>
#include <QObject>
#include <QString>

#include <optional>

namespace nimbarrow {

/// Port: the system's own music application. This class itself is a system without one: it never runs.
class MusicApp : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    struct Running {
        qint32 pid = 0;
        /// Empty where the system tells none.
        QString name;
        QImage icon;
    };

    /// None while it does not run.
    [[nodiscard]] virtual std::optional<Running> running() const { return {}; }

Q_SIGNALS:
    /// It plays something else, or in another way.
    void playerInfoChanged();
    void terminated();
};

} // namespace nimbarrow
