#include "linux/screenshots/ScreenshotSettings.h"

#include "files/KeyFile.h"
#include "linux/session/GSettings.h"

#include <QDir>
#include <QUrl>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow::screenshotsettings {

namespace {

/// Each release of the tool has had another name for it; the newest first.
const std::array spectacleKeys {
    std::pair("ImageSave"_ba, "imageSaveLocation"_ba),
    std::pair("Save"_ba, "defaultSaveLocation"_ba),
    std::pair("General"_ba, "screenshotLocation"_ba),
};

/// Tools keep a folder as a path or as a link.
QString path(const QString& value)
{
    return value.startsWith("file:"_L1) ? QUrl(value).toLocalFile() : value;
}

/// KDE's files have "\s" for a space.
QString unescaped(QByteArrayView value, bool marksSpaces)
{
    QByteArray result;
    for (qsizetype place = 0; place < value.size(); ++place) {
        if (value[place] == '\\' && place + 1 < value.size())
            result += value[++place] == 's' && marksSpaces ? ' ' : value[place];
        else
            result += value[place];
    }
    return QString::fromUtf8(result);
}

/// What `gsettings` prints for a text: in quotes of either kind, with marks before what has to be marked.
QString textOf(const QByteArray& printed)
{
    const auto value = printed.trimmed();
    if (value.size() < 2 || value.front() != value.back() || (value.front() != '\'' && value.front() != '"'))
        return {};
    return unescaped(QByteArrayView(value).sliced(1).chopped(1), false);
}

} // namespace

QString gnome()
{
    const auto printed = gsettings({ u"get"_s, u"org.gnome.gnome-screenshot"_s, u"auto-save-directory"_s });
    return printed ? path(textOf(printed->toUtf8())) : QString();
}

QString spectacle(const QByteArray& configuration)
{
    const KeyFile file(configuration);
    for (const auto& [group, key] : spectacleKeys) {
        // Behind the name there may stand that the value names variables, or is not to be changed.
        for (const auto* const mark : { "", "[$e]", "[$i]", "[$ei]", "[$ie]" }) {
            auto value = unescaped(file.value(group, key + mark), true);
            if (QByteArrayView(mark).contains('e'))
                value.replace("${HOME}"_L1, QDir::homePath()).replace("$HOME"_L1, QDir::homePath());
            if (!value.isEmpty())
                return path(value);
        }
    }
    return {};
}

} // namespace nimbarrow::screenshotsettings
