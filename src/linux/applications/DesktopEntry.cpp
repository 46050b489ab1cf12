#include "linux/applications/DesktopEntry.h"

#include "files/KeyFile.h"

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
    const KeyFile file(text);
    const auto value = [&file](const QByteArray& key) { return file.value("Desktop Entry", key); };
    DesktopEntry entry;
    entry.id = id;
    entry.isHidden = value("Hidden") == "true";
    if (entry.isHidden)
        return entry;
    entry.categories = QString::fromUtf8(value("Categories")).split(u';', Qt::SkipEmptyParts);
    entry.startupWmClass = unescaped(value("StartupWMClass"));
    entry.icon = unescaped(value("Icon"));
    // The better a name fits the locale, the further back it stands.
    for (const auto& key : { QByteArray("Name"), "Name[" + locale.section(u'_', 0, 0).toUtf8() + ']',
             "Name[" + locale.toUtf8() + ']' }) {
        if (const auto name = unescaped(value(key)); !name.isEmpty())
            entry.name = name;
    }
    if (value("Type") != "Application" || entry.name.isEmpty())
        return {};
    return entry;
}

} // namespace nimbarrow
