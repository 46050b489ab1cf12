#pragma once

#include "platform/Port.h"

#include <QString>
#include <QStringList>

namespace nimbarrow {

/// Port: where the system's screenshot tool saves, and which files it says it has made. Any thread.
class ScreenshotFolder : public Port {
public:
    /// The folders that screenshot tools save to, set by the user or of their own accord. They may begin with
    /// "~" and need not exist yet. May take seconds.
    [[nodiscard]] virtual QStringList settings() const = 0;

    /// Where screenshots go when none of these exists.
    [[nodiscard]] virtual QString defaultFolder() const = 0;

    /// Whether the system has marked the file as a picture of the screen. Reads little of the file.
    [[nodiscard]] virtual bool isScreenCapture(const QString& path) const = 0;
};

} // namespace nimbarrow
