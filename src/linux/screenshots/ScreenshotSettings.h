#pragma once

#include <QByteArray>
#include <QString>

/// The folders that people set in their screenshot tools. Empty where nothing is set.
namespace nimbarrow::screenshotsettings {

/// Of GNOME's own tool, which other desktops ship too; from the desktop's settings, where the tool's schema
/// is installed. Any thread but the main one: waits for the tool of those settings.
[[nodiscard]] QString gnome();

/// Of KDE's tool, from the text of its settings file.
[[nodiscard]] QString spectacle(const QByteArray& configuration);

} // namespace nimbarrow::screenshotsettings
