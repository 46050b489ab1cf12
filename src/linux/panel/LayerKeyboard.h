#pragma once

#include <QtGlobal>

#include <functional>

struct wl_callback;
struct wl_keyboard;

namespace nimbarrow {

/// The keyboard as the compositor gives and takes it. Qt does not tell of one that comes back at once: so it
/// does where a layer surface keeps the keys for itself, whenever another window would have got them.
class LayerKeyboard {
public:
    /// For a surface that has asked for the keyboard. `lost` is called on the main thread, in the middle of
    /// the compositor's events, each time that the surface loses it after that.
    explicit LayerKeyboard(std::function<void()> lost);
    ~LayerKeyboard();
    Q_DISABLE_COPY_MOVE(LayerKeyboard)

private:
    void listen();

    std::function<void()> m_lost;
    /// Done when the compositor has heard the request: a keyboard that stayed with the surface, since nobody
    /// else wanted it, is taken away for a moment then.
    wl_callback* m_answer;
    /// Null where there is no keyboard, and before the answer.
    wl_keyboard* m_keyboard = nullptr;
};

} // namespace nimbarrow
