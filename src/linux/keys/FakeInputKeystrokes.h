#pragma once

#include "platform/Keystrokes.h"

struct org_kde_kwin_fake_input;
struct wl_display;
struct wl_keyboard;
struct wl_seat;

namespace nimbarrow {

class DesktopApplications;

/// Types as KWin's own keyboard. KWin offers that only to a program whose installed desktop file asks for it.
class FakeInputKeystrokes final : public Keystrokes {
public:
    /// Waits for one answer of the compositor. The connection's events are read on this thread.
    /// `applications` tells what is in front; both live longer.
    FakeInputKeystrokes(wl_display* display, const DesktopApplications& applications);
    ~FakeInputKeystrokes() override;

    /// Whether KWin lets this program type.
    [[nodiscard]] bool isAvailable() const { return m_input != nullptr; }

    void postPaste() override;

private:
    struct Events;

    /// `key` is a code of the kernel's.
    void typePaste(unsigned key);
    void releaseKeyboard();

    wl_display* m_display;
    const DesktopApplications& m_applications;
    wl_seat* m_seat = nullptr;
    org_kde_kwin_fake_input* m_input = nullptr;
    /// While it is asked which key types what.
    wl_keyboard* m_keyboard = nullptr;
};

} // namespace nimbarrow
