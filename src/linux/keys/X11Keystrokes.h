#pragma once

#include "platform/Keystrokes.h"

namespace nimbarrow {

class DesktopApplications;

/// Types through the server's test extension. Modifiers that the user still holds are lifted while it types.
class X11Keystrokes final : public Keystrokes {
public:
    /// `applications` tells what is in front, and must live longer.
    explicit X11Keystrokes(const DesktopApplications& applications);

    /// Whether the server has that extension.
    [[nodiscard]] bool isAvailable() const;

    void postPaste() override;

private:
    const DesktopApplications& m_applications;
};

} // namespace nimbarrow
