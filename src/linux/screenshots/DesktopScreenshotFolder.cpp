#include "linux/screenshots/DesktopScreenshotFolder.h"

#include "linux/screenshots/PngText.h"
#include "linux/screenshots/ScreenshotSettings.h"
#include "linux/session/XdgLocations.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr qint64 mostSettings = qint64 { 256 } * 1024;

// The desktop names it in the language of the session that takes the first screenshot.
const QStringList& folderNames()
{
    static const QStringList names { u"Screenshots"_s, u"Знімки екрана"_s, u"Снимки экрана"_s,
        u"Bildschirmfotos"_s, u"Captures d’écran"_s, u"Capturas de pantalla"_s, u"Zrzuty ekranu"_s };
    return names;
}

// As they write it into their files.
constexpr std::array tools { "gnome-screenshot"_L1, "mate-screenshot"_L1, "xfce4-screenshooter"_L1,
    "spectacle"_L1, "flameshot"_L1, "ksnip"_L1 };

// These write nothing into their files, but always end the name like this.
constexpr std::array nameEndings { "_grim.png"_L1, "_scrot.png"_L1 };

QString spectacleFolder()
{
    QFile file(XdgLocations::configuration() + "/spectaclerc"_L1);
    if (!QFileInfo(file).isFile() || !file.open(QFile::ReadOnly))
        return {};
    return screenshotsettings::spectacle(file.read(mostSettings));
}

} // namespace

QStringList DesktopScreenshotFolder::settings() const
{
    QStringList settings { screenshotsettings::gnome(), spectacleFolder() };
    if (qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains("KDE"_L1))
        std::ranges::reverse(settings);
    settings.removeAll(QString());
    return settings;
}

QString DesktopScreenshotFolder::defaultFolder() const
{
    const auto pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    // Of several, left behind by a change of language, the one that is in use.
    QFileInfo newest;
    for (const auto& name : folderNames()) {
        const QFileInfo folder(pictures + u'/' + name);
        if (folder.isDir() && (!newest.exists() || folder.lastModified() > newest.lastModified()))
            newest = folder;
    }
    return newest.exists() ? newest.absoluteFilePath()
                           : QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

bool DesktopScreenshotFolder::isScreenCapture(const QString& path) const
{
    const auto isEnding = [&path](QLatin1StringView ending) { return path.endsWith(ending); };
    if (std::ranges::any_of(nameEndings, isEnding))
        return true;
    if (!path.endsWith(".png"_L1, Qt::CaseInsensitive))
        return false;
    const auto software = pngtext::software(path);
    return software && std::ranges::any_of(tools, [&software](QLatin1StringView tool) {
        return software->contains(tool, Qt::CaseInsensitive);
    });
}

} // namespace nimbarrow
