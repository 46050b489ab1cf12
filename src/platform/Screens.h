#pragma once

#include "platform/ScreenGeometry.h"

#include <QList>
#include <QObject>
#include <QSize>
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

/// What came of declaring a notch, in words for a terminal.
struct NotchDeclaration {
    /// Where it was written down; empty when it was not.
    QString place;
    /// Why it was not, as a sentence.
    QString failure;
};

/// Port: the screens of the desktop, in the system's order.
class Screens : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual QList<Screen> screens() const = 0;

    /// The screen that is to have the panel when no screen has a notch: the first built-in one, else the main
    /// one. Empty where a notch cannot be declared, for the system knows its own.
    [[nodiscard]] virtual QString screenToDeclare() const { return {}; }

    /// Writes down, for as long as nobody says otherwise, that a screen has a notch of this size, in points,
    /// in the middle of its top edge; none for an empty size. Without a name it is `screenToDeclare()`. It
    /// counts at once, in other programs of the session, too. Waits for the disk.
    [[nodiscard]] virtual NotchDeclaration declareNotch(const QString& screen, QSize size)
    {
        Q_UNUSED(screen)
        Q_UNUSED(size)
        return { {}, QStringLiteral("This system tells of its notches itself.") };
    }

Q_SIGNALS:
    /// A screen came, went, or changed its size, place or scale.
    void changed();
};

} // namespace nimbarrow
