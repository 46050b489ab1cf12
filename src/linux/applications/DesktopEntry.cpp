#include "linux/applications/DesktopEntry.h"

#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

QString unescaped(QByteArrayView value)
{
    QByteArray result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        switch (value[++i]) {
        case 's':
        case 'n':
        case 't':
        case 'r': result += ' '; break;
        default: result += value[i];
        }
    }
    return QString::fromUtf8(result);
}

} // namespace

std::optional<DesktopEntry> DesktopEntry::parse(
    const QString& id, const QByteArray& text, const QString& locale)
{
    DesktopEntry entry;
    entry.id = id;
    // The better a name fits the locale, the further down it stands.
    const std::array nameKeys { QByteArray("Name"), "Name[" + locale.section(u'_', 0, 0).toUtf8() + ']',
        "Name[" + locale.toUtf8() + ']' };
    std::array<QString, nameKeys.size()> names;
    auto isApplication = false;
    auto isInside = false;
    for (const auto lines = text.split('\n'); const auto& line : lines) {
        const auto trimmed = line.trimmed();
        if (trimmed.startsWith('[')) {
            isInside = trimmed == "[Desktop Entry]";
            continue;
        }
        const auto equals = trimmed.indexOf('=');
        if (!isInside || equals < 0 || trimmed.startsWith('#'))
            continue;
        const auto key = trimmed.left(equals).trimmed();
        const auto value = trimmed.mid(equals + 1).trimmed();
        if (key == "Type")
            isApplication = value == "Application";
        else if (key == "Categories")
            entry.categories = QString::fromUtf8(value).split(u';', Qt::SkipEmptyParts);
        else if (key == "StartupWMClass")
            entry.startupWmClass = unescaped(value);
        else if (key == "Icon")
            entry.icon = unescaped(value);
        else if (key == "Hidden")
            entry.isHidden = value == "true";
        for (std::size_t i = 0; i < nameKeys.size(); ++i) {
            if (key == nameKeys[i])
                names[i] = unescaped(value);
        }
    }
    for (const auto& name : names) {
        if (!name.isEmpty())
            entry.name = name;
    }
    if (entry.isHidden)
        return entry;
    if (!isApplication || entry.name.isEmpty())
        return {};
    return entry;
}

} // namespace nimbarrow
