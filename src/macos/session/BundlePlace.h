#pragma once

#include <QString>

namespace nimbarrow::bundleplace {

/// Whether a bundle lies elsewhere than in the folder of all programs, or in one inside it. `path` is
/// absolute.
[[nodiscard]] bool isOutsideApplications(const QString& path);

/// The bundle's folder of resources, from the folder that the program itself lies in.
[[nodiscard]] QString resources(const QString& programFolder);

} // namespace nimbarrow::bundleplace
