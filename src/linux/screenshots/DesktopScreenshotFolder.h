#pragma once

#include "platform/ScreenshotFolder.h"

namespace nimbarrow {

/// Where the screenshot tools of the desktops save, and what they write into or call their files.
class DesktopScreenshotFolder final : public ScreenshotFolder {
public:
    [[nodiscard]] QStringList settings() const override;
    /// The desktop.
    [[nodiscard]] QString defaultFolder() const override;
    [[nodiscard]] bool isScreenCapture(const QString& path) const override;
};

} // namespace nimbarrow
