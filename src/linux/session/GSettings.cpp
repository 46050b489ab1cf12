#include "linux/session/GSettings.h"

#include <QProcess>
#include <QProcessEnvironment>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// Milliseconds. Its first question may start the desktop's own settings service.
constexpr int toolPatience = 5000;

} // namespace

std::optional<QString> gsettings(const QStringList& words)
{
    QProcess tool;
    auto environment = QProcessEnvironment::systemEnvironment();
    // Elsewhere it prints question marks for what is not ASCII.
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    tool.setProcessEnvironment(environment);
    tool.start(u"gsettings"_s, words, QIODevice::ReadOnly);
    if (!tool.waitForFinished(toolPatience) || tool.exitStatus() != QProcess::NormalExit
        || tool.exitCode() != 0)
        return {};
    return QString::fromUtf8(tool.readAllStandardOutput());
}

} // namespace nimbarrow
