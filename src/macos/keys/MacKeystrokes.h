#pragma once

#include "platform/Keystrokes.h"

namespace nimbarrow {

/// Keystrokes put in where those of the keyboards come from.
class MacKeystrokes final : public Keystrokes {
public:
    void postPaste() override;
};

} // namespace nimbarrow
