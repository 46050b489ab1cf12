#pragma once

#include "platform/Keystrokes.h"

namespace nimbarrow {

/// Counts what would have been typed.
class FakeKeystrokes final : public Keystrokes {
public:
    int pastes = 0;

    void postPaste() override { ++pastes; }
};

} // namespace nimbarrow
