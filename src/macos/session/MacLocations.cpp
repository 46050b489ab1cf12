#include "macos/session/MacLocations.h"

#include <QDir>
#include <QStandardPaths>

namespace nimbarrow {

QString MacLocations::applicationSupport() const
{
    // The one that programs add their own folder to.
    return QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}

} // namespace nimbarrow
