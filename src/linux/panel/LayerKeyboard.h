#pragma once

#include <QtGlobal>

#include <functional>

struct wl_keyboard;

namespace nimbarrow {

/// The keyboard as the compositor gives and takes it. Qt does not tell of one that comes back at once: so it
/// does where a layer surface keeps the keys for itself, whenever another window would have got them.
class LayerKeyboard {
public:
    /// `lost` is called on the main thread, in the middle of the compositor's events, each time that the
    /// surface with the keyboard loses it.
    explicit LayerKeyboard(std::function<void()> lost);
    ~LayerKeyboard();
    Q_DISABLE_COPY_MOVE(LayerKeyboard)

private:
    std::function<void()> m_lost;
    /// Null where there is no keyboard.
    wl_keyboard* m_keyboard = nullptr;
};

} // namespace nimbarrow
