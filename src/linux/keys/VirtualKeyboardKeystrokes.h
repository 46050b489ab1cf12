#pragma once

#include "platform/Keystrokes.h"

struct wl_display;
struct wl_seat;
struct zwp_virtual_keyboard_v1;

namespace nimbarrow {

class DesktopApplications;

/// Types on a keyboard that the compositor lets programs have beside the user's own. What the user holds down
/// meanwhile belongs to another keyboard and is not mixed in.
class VirtualKeyboardKeystrokes final : public Keystrokes {
public:
    /// Waits for one answer of the compositor. `applications` tells what is in front; both live longer.
    VirtualKeyboardKeystrokes(wl_display* display, const DesktopApplications& applications);
    ~VirtualKeyboardKeystrokes() override;

    /// Whether the compositor gives such keyboards.
    [[nodiscard]] bool isAvailable() const { return m_keyboard != nullptr; }

    void postPaste() override;

private:
    /// The keyboard types English letters, whichever the user's keyboard has. False when that cannot be made.
    [[nodiscard]] bool sendKeymap();

    wl_display* m_display;
    const DesktopApplications& m_applications;
    wl_seat* m_seat = nullptr;
    zwp_virtual_keyboard_v1* m_keyboard = nullptr;
    unsigned m_control = 0;
    unsigned m_shift = 0;
};

} // namespace nimbarrow
