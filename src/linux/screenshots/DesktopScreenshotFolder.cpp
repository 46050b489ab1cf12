#include "linux/screenshots/DesktopScreenshotFolder.h"

#include "linux/screenshots/PngText.h"
#include "linux/screenshots/ScreenshotSettings.h"
#include "linux/session/XdgLocations.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
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

QString flameshotFolder()
{
    const auto path = XdgLocations::configuration() + "/flameshot/flameshot.ini"_L1;
    return QFileInfo(path).isFile() ? QSettings(path, QSettings::IniFormat).value(u"savePath"_s).toString()
                                    : QString();
}

} // namespace

QStringList DesktopScreenshotFolder::settings() const
{
    QStringList settings { screenshotsettings::gnome(), spectacleFolder(), flameshotFolder() };
    settings.removeAll(QString());
    // Where GNOME, KDE and all the others save unless they are told otherwise.
    const auto pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    for (const auto& name : folderNames())
        settings << pictures + u'/' + name;
    settings << pictures;
    // Elsewhere people save to the desktop, where there is one.
    if (const auto desktop = defaultFolder(); QFileInfo(desktop).isDir())
        settings << desktop;
    return settings;
}

QString DesktopScreenshotFolder::defaultFolder() const
{
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

bool DesktopScreenshotFolder::isScreenCapture(const QString& path) const
{
    // Flameshot writes nothing into its files, either, and names them by the minute.
    static const QRegularExpression minute(u"^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d(_\\d+)?\\.png$"_s);
    const auto isEnding = [&path](QLatin1StringView ending) { return path.endsWith(ending); };
    if (std::ranges::any_of(nameEndings, isEnding) || minute.match(QFileInfo(path).fileName()).hasMatch())
        return true;
    if (!path.endsWith(".png"_L1, Qt::CaseInsensitive))
        return false;
    const auto software = pngtext::software(path);
    return software && std::ranges::any_of(tools, [&software](QLatin1StringView tool) {
        return software->contains(tool, Qt::CaseInsensitive);
    });
}

} // namespace nimbarrow
