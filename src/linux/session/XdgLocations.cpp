#include "linux/session/XdgLocations.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

/// A relative path in one of these variables counts as none.
QString folder(const char* variable, QLatin1StringView defaultInHome)
{
    const auto path = qEnvironmentVariable(variable);
    return QDir::cleanPath(QDir::isAbsolutePath(path) ? path : QDir::homePath() + defaultInHome);
}

} // namespace

QString XdgLocations::applicationSupport() const
{
    return folder("XDG_DATA_HOME", "/.local/share"_L1);
}

QString XdgLocations::configuration()
{
    return folder("XDG_CONFIG_HOME", "/.config"_L1);
}

} // namespace nimbarrow
