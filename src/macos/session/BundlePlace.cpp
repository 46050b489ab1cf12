#include "macos/session/BundlePlace.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace nimbarrow::bundleplace {

bool isOutsideApplications(const QString& path)
{
    return !QDir::cleanPath(path).startsWith("/Applications/"_L1);
}

QString resources(const QString& programFolder)
{
    return QDir::cleanPath(programFolder + "/../Resources"_L1);
}

} // namespace nimbarrow::bundleplace
