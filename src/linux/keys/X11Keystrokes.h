#pragma once

#include "platform/Keystrokes.h"

namespace nimbarrow {

class X11Applications;

/// Types through the server's test extension. Modifiers that the user still holds are lifted while it types.
class X11Keystrokes final : public Keystrokes {
public:
    /// `applications` tells what is in front, and must live longer.
    explicit X11Keystrokes(const X11Applications& applications);

    void postPaste() override;

private:
    const X11Applications& m_applications;
};

} // namespace nimbarrow
