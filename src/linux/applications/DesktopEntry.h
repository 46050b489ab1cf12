#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace nimbarrow {

/// What the program uses of a desktop entry.
struct DesktopEntry {
    /// The name of the file without its suffix, with "-" for each folder: "org.xfce.mousepad".
    QString id;
    QString name;
    /// The name of an icon of the theme, or the path of a picture.
    QString icon;
    QStringList categories;
    QString startupWmClass;
    bool isHidden = false;

    /// Reads the text of a desktop file. `locale` such as "uk_UA" picks the name. None for what is no
    /// program.
    [[nodiscard]] static std::optional<DesktopEntry> parse(
        const QString& id, const QByteArray& text, const QString& locale);

    friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

} // namespace nimbarrow
