#include "platform/linux/ScreenshotSettings.h"

#include <QDir>
#include <QUrl>

#include <array>
#include <gio/gio.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace nimbarrow::screenshotsettings {

namespace {

/// Each release of the tool has had another name for it; the newest first.
struct SpectacleKey {
    QByteArrayView group;
    QByteArrayView key;
};
constexpr std::array spectacleKeys {
    SpectacleKey { "ImageSave", "imageSaveLocation" },
    SpectacleKey { "Save", "defaultSaveLocation" },
    SpectacleKey { "General", "screenshotLocation" },
};

/// Tools keep a folder as a path or as a link.
QString path(const QString& value)
{
    return value.startsWith("file:"_L1) ? QUrl(value).toLocalFile() : value;
}

QString unescaped(QByteArrayView value)
{
    QByteArray result;
    for (qsizetype place = 0; place < value.size(); ++place) {
        if (value[place] == '\\' && place + 1 < value.size())
            result += value[++place] == 's' ? ' ' : value[place];
        else
            result += value[place];
    }
    return QString::fromUtf8(result);
}

struct Unreference {
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
    void operator()(GSettings* settings) const { g_object_unref(settings); }
};

} // namespace

QString gnome()
{
    constexpr auto key = "auto-save-directory";
    auto* const source = g_settings_schema_source_get_default();
    if (!source)
        return {};
    const std::unique_ptr<GSettingsSchema, Unreference> schema(
        g_settings_schema_source_lookup(source, "org.gnome.gnome-screenshot", TRUE));
    // A key or a type that is not there would end the program.
    if (!schema || !g_settings_schema_has_key(schema.get(), key))
        return {};
    const std::unique_ptr<GSettings, Unreference> settings(
        g_settings_new_full(schema.get(), nullptr, nullptr));
    auto* const value = g_settings_get_value(settings.get(), key);
    const auto text = g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)
        ? QString::fromUtf8(g_variant_get_string(value, nullptr))
        : QString();
    g_variant_unref(value);
    return path(text);
}

QString spectacle(const QByteArray& configuration)
{
    std::array<QString, spectacleKeys.size()> values;
    QByteArray group;
    for (const auto lines = configuration.split('\n'); const auto& raw : lines) {
        const auto line = raw.trimmed();
        if (line.startsWith('[') && line.endsWith(']')) {
            group = line.sliced(1).chopped(1);
            continue;
        }
        const auto equals = line.indexOf('=');
        if (equals < 0 || line.startsWith('#'))
            continue;
        // Behind the name there may stand what the value needs: "imageSaveLocation[$e]".
        const auto name = line.left(equals).trimmed();
        const auto option = name.indexOf('[');
        const auto key = option < 0 ? name : name.left(option);
        for (std::size_t index = 0; index < spectacleKeys.size(); ++index) {
            if (group != spectacleKeys[index].group || key != spectacleKeys[index].key)
                continue;
            values[index] = unescaped(line.sliced(equals + 1).trimmed());
            if (option >= 0 && name.sliced(option).contains('e'))
                values[index].replace("${HOME}"_L1, QDir::homePath()).replace("$HOME"_L1, QDir::homePath());
        }
    }
    for (const auto& value : values) {
        if (!value.isEmpty())
            return path(value);
    }
    return {};
}

} // namespace nimbarrow::screenshotsettings
