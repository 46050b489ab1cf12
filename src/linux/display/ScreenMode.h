#pragma once

#include <QSize>
#include <QString>

#include <functional>

class QScreen;

namespace nimbarrow {

/// What stands behind a screen of Qt's.
struct ScreenMode {
    /// Of the connector, such as eDP-1.
    QString name;
    /// In pixels.
    QSize size;
};

using ScreenModeOf = std::function<ScreenMode(const QScreen& screen)>;

} // namespace nimbarrow
