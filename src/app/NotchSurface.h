#pragma once

#include <QQuickView>

#include <memory>

namespace nimbarrow {

class AppModel;
class NotchController;
class PanelWindow;
class RestingMemory;
struct Platform;

/// The window of the surface with its views in it, and the port that makes a panel of it.
class NotchSurface final {
public:
    /// The platform outlives the surface.
    explicit NotchSurface(const Platform& platform);
    ~NotchSurface();
    Q_DISABLE_COPY_MOVE(NotchSurface)

    [[nodiscard]] PanelWindow& panelWindow() { return *m_panelWindow; }

    /// Fills the window. Both outlive the views.
    void load(NotchController& controller, AppModel& model);
    void unload();

private:
    const Platform& m_platform;
    QQuickView m_view;
    std::unique_ptr<PanelWindow> m_panelWindow;
    std::unique_ptr<RestingMemory> m_restingMemory;
};

} // namespace nimbarrow
