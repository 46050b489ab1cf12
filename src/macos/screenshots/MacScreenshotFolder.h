#pragma once

#include "platform/ScreenshotFolder.h"

namespace nimbarrow {

/// What the system's own screenshot tool is set to, and how it marks its files.
class MacScreenshotFolder final : public ScreenshotFolder {
public:
    [[nodiscard]] QStringList settings() const override;
    [[nodiscard]] QString defaultFolder() const override;
    [[nodiscard]] bool isScreenCapture(const QString& path) const override;
};

} // namespace nimbarrow
