#pragma once

#include "platform/ScreenshotFolder.h"

namespace nimbarrow {

/// Where the screenshot tools of GNOME and KDE save, and what they write into or call their files.
class DesktopScreenshotFolder final : public ScreenshotFolder {
public:
    [[nodiscard]] QStringList settings() const override;
    /// The folder for screenshots among the user's pictures where there is one, else the desktop.
    [[nodiscard]] QString defaultFolder() const override;
    [[nodiscard]] bool isScreenCapture(const QString& path) const override;
};

} // namespace nimbarrow
