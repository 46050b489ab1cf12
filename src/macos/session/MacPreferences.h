#pragma once

#include "macos/session/Observation.h"
#include "platform/DesktopPreferences.h"

namespace nimbarrow {

/// The languages and the motion that the user has chosen in the system's settings.
class MacPreferences final : public DesktopPreferences {
public:
    MacPreferences();

    [[nodiscard]] QStringList preferredLanguages() const override;
    [[nodiscard]] bool reduceMotion() const override { return m_reduceMotion; }

private:
    void readMotion();

    bool m_reduceMotion;
    Observation m_displayOptions;
};

} // namespace nimbarrow
