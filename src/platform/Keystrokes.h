#pragma once

#include "platform/Port.h"

namespace nimbarrow {

/// Port: keystrokes typed in the user's place.
class Keystrokes : public Port {
public:
    /// Types the paste shortcut of the program in front. What cannot be typed is skipped without a word.
    virtual void postPaste() = 0;
};

} // namespace nimbarrow
