#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

struct wl_callback;
struct wl_keyboard;
struct wl_surface;

namespace nimbarrow {

/// Asks the compositor for the keyboard and follows how it gives and takes it. Where it is given on demand a
/// click elsewhere takes it away: to a surface that stands there by some compositors, and by others only to
/// one that comes. Whoever gives nothing so is asked for all keys: sway takes them away and gives them back
/// whenever another window would have got them, which Qt does not tell.
class LayerKeyboard {
public:
    enum class Claim { OnDemand, OnDemandAnew, Exclusive };

    /// `surface` outlives it. `claim` makes the claim in the surface's name; for OnDemandAnew it brings
    /// another surface, if it can. `lost` is called each time that the surface loses the keyboard after it
    /// was given. Both on the main thread, in the middle of the compositor's events.
    LayerKeyboard(wl_surface* surface, std::function<void(Claim)> claim, std::function<void()> lost);
    ~LayerKeyboard();
    Q_DISABLE_COPY_MOVE(LayerKeyboard)

    /// From now on in the name of that surface.
    void setSurface(wl_surface* surface);
    /// Looks whether the claim has had success once the compositor has dealt with all that it was told so
    /// far. Only after OnDemandAnew this is not done by itself.
    void awaitAnswer();

private:
    void goOn();

    wl_surface* m_surface;
    std::function<void(Claim)> m_claim;
    std::function<void()> m_lost;
    std::optional<Claim> m_claimed;
    /// Done when the compositor has answered all that it was asked so far.
    wl_callback* m_answer = nullptr;
    /// Null where there is no keyboard.
    wl_keyboard* m_keyboard = nullptr;
    bool m_isHere = false;
    bool m_isGiven = false;
};

} // namespace nimbarrow
