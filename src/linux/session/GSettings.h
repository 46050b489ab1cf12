#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace nimbarrow {

/// Runs GNOME's `gsettings` with these words; what it prints, or none where it fails or is not there. Any
/// thread but the main one: waits for up to 5 s. A program spares ours the libraries of those settings.
std::optional<QString> gsettings(const QStringList& words);

} // namespace nimbarrow
