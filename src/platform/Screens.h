#pragma once

#include "platform/ScreenGeometry.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace nimbarrow {

/// What a screen says of itself.
struct Screen {
    QString name;
    ScreenRect frame;
    /// Points from the top edge that a cut-out takes; 0 where there is none.
    double topInset = 0;
    /// The usable areas at the top edge beside the cut-out; absent where there is none.
    std::optional<ScreenRect> topLeftArea;
    std::optional<ScreenRect> topRightArea;

    friend bool operator==(const Screen&, const Screen&) = default;
};

/// Port: the screens of the desktop, in the system's order.
class Screens : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual QList<Screen> screens() const = 0;

    /// How a person tells the system of a notch that it does not know, in words for a terminal; empty where
    /// that cannot be done.
    [[nodiscard]] virtual QString howToDeclareNotch() const { return {}; }

Q_SIGNALS:
    /// A screen came, went, or changed its size, place or scale.
    void changed();
};

} // namespace nimbarrow
