#pragma once

#include "linux/panel/LayerFocusReturn.h"
#include "linux/panel/LayerKeyboard.h"
#include "linux/panel/PanelKeys.h"
#include "platform/PanelWindow.h"

#include <QPointer>
#include <QRect>

#include <memory>

class QQuickWindow;
class QScreen;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace nimbarrow {

class WaylandPointer;

/// A panel in the compositor's layer above all windows. Its surface is as large as the largest frame that it
/// has had at this place, and the smaller ones lie in its middle: a surface that changes its size is one
/// frame late, but its outline is not. All that is outside the outline is transparent, to clicks too.
class LayerShellPanelWindow final : public PanelWindow {
    Q_OBJECT

public:
    /// `window` was never shown. Both must outlive the panel; the pointer learns what the surface hears of
    /// it. The program must run on Qt's Wayland platform, with a compositor that has the layer shell.
    LayerShellPanelWindow(QQuickWindow& window, WaylandPointer& pointer);
    ~LayerShellPanelWindow() override;

    void setFrame(const ScreenRect& frame) override;
    void orderFront() override;
    void orderOut() override;
    void makeKey() override;
    void resignKey() override;
    [[nodiscard]] bool isKey() const override { return m_keyboard != nullptr; }
    /// The compositor gives it to whom it has taken it from.
    [[nodiscard]] bool hasReturnedKey() const override { return true; }
    void setOutline(const QPainterPath& outline) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Destroy {
        void operator()(zwlr_layer_shell_v1* shell) const;
        void operator()(zwlr_layer_surface_v1* layer) const;
    };

    /// Gives the window a surface in the layer; it is shown as soon as the compositor agrees.
    void map();
    void show();
    /// The window has no surface after that.
    void unmap();
    void mapAnew();
    void place();
    /// Both one of the layer shell's values.
    void setInteractivity(quint32 interactivity);
    [[nodiscard]] quint32 onDemand() const;
    void claimKeyboard(LayerKeyboard::Claim claim);
    void mapForKeyboard();
    void keyboardLost();
    void followPointer(const QEvent& event);
    [[nodiscard]] QScreen* screenOfFrame() const;

    QQuickWindow& m_window;
    WaylandPointer& m_pointer;
    PanelKeys m_keys;
    std::unique_ptr<zwlr_layer_shell_v1, Destroy> m_shell;
    std::unique_ptr<LayerFocusReturn> m_focusReturn;
    /// Whether the compositor may give the keyboard on demand to a surface that comes, which sway never does:
    /// whoever looks sees the panel blink then.
    bool m_mayGiveToNew;
    /// Lockers that know no better stand in the highest layer too, and the compositor draws what came first
    /// above what came later: there the panel stays one layer below, and so below windows that fill the
    /// screen.
    bool m_lockersAreSurfaces = false;
    /// Of scales between two whole ones, Qt's and the compositor's both.
    bool m_hasFractions = false;
    std::unique_ptr<zwlr_layer_surface_v1, Destroy> m_layer;
    QPointer<QScreen> m_screen;
    /// In Qt's coordinates of the desktop.
    QRect m_surface;
    bool m_isFront = false;
    /// While the panel is to have the keys.
    std::unique_ptr<LayerKeyboard> m_keyboard;
};

} // namespace nimbarrow
