#pragma once

#include "platform/Platform.h"

#include <memory>

namespace nimbarrow {

class AppModel;
class NotchController;
class NotchOffer;
class NotchSurface;

/// The root of the program: owns the model, the controller and the surface for as long as the process runs.
class AppDelegate final {
public:
    explicit AppDelegate(Platform platform);
    ~AppDelegate();
    Q_DISABLE_COPY_MOVE(AppDelegate)

    /// False when the program is to end because another copy runs, which is asked to open its surface.
    /// `forKeyboard` when the program is started for that alone.
    [[nodiscard]] bool applicationDidFinishLaunching(bool forKeyboard);

    /// After the main loop: nothing that was done last is lost.
    void applicationWillTerminate();

private:
    void answer(Instance::Request request);

    Platform m_platform;
    std::unique_ptr<AppModel> m_model;
    std::unique_ptr<NotchSurface> m_surface;
    std::unique_ptr<NotchController> m_notch;
    std::unique_ptr<NotchOffer> m_offer;
};

} // namespace nimbarrow
