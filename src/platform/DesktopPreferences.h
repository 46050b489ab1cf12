#pragma once

#include <QObject>
#include <QStringList>

namespace nimbarrow {

/// Port: what the user chose for the whole desktop.
class DesktopPreferences : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// As language tags such as "uk-UA", the most wanted first; may be empty.
    [[nodiscard]] virtual QStringList preferredLanguages() const = 0;

    /// True when the user asked the desktop for less motion.
    [[nodiscard]] virtual bool reduceMotion() const = 0;

Q_SIGNALS:
    void reduceMotionChanged();
};

} // namespace nimbarrow
