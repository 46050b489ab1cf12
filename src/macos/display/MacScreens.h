#pragma once

#include "macos/session/Observation.h"
#include "platform/Screens.h"

#include <QTimer>

namespace nimbarrow {

/// The system's screens, with the areas beside a camera housing.
class MacScreens final : public Screens {
public:
    MacScreens();

    [[nodiscard]] QList<Screen> screens() const override;

private:
    void compare();

    QList<Screen> m_last;
    QTimer m_settled;
    Observation m_parameters;
};

} // namespace nimbarrow
