#include "linux/session/InstalledFile.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::StringLiterals;

namespace nimbarrow {

QString installedFile(const QString& name)
{
    const auto folder = QCoreApplication::applicationDirPath() + u'/';
    const auto built = folder + name;
    return QFile::exists(built) ? built : folder + NIMBARROW_FOLDER_FROM_PROGRAM "/"_L1 + name;
}

} // namespace nimbarrow
