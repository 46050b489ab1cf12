#pragma once

#include "platform/DesktopPreferences.h"

namespace nimbarrow {

/// A desktop whose user wants what the test says.
class FakeDesktopPreferences final : public DesktopPreferences {
public:
    QStringList languages { QStringLiteral("en-GB") };
    bool lessMotion = false;

    [[nodiscard]] QStringList preferredLanguages() const override { return languages; }
    [[nodiscard]] bool reduceMotion() const override { return lessMotion; }
};

} // namespace nimbarrow
