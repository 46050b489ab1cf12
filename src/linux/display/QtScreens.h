#pragma once

#include "linux/display/ScreenMode.h"
#include "platform/Screens.h"

#include <QTimer>

#include <memory>

class QScreen;

namespace nimbarrow {

class ScreenCutouts;

/// The screens that Qt knows, with the cut-outs that the system knows of.
class QtScreens final : public Screens {
    Q_OBJECT

public:
    /// Without `modeOf` it is Qt that knows what stands behind a screen.
    explicit QtScreens(std::unique_ptr<ScreenCutouts> cutouts, ScreenModeOf modeOf = {});
    ~QtScreens() override;

    [[nodiscard]] QList<Screen> screens() const override;
    [[nodiscard]] QString screenToDeclare() const override;
    [[nodiscard]] NotchDeclaration declareNotch(const QString& screen, QSize size) override;

private:
    void follow(QScreen* screen);
    void compare();

    std::unique_ptr<ScreenCutouts> m_cutouts;
    ScreenModeOf m_modeOf;
    QList<Screen> m_last;
    QTimer m_settled;
};

} // namespace nimbarrow
