#include "linux/session/AutostartLoginItem.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QSaveFile>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QHash<QString, QString> readEntry(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    constexpr qint64 most = 65'536;
    const auto lines = QString::fromUtf8(file.read(most)).split(u'\n');
    QHash<QString, QString> entry;
    bool inEntry = false;
    for (const auto& untrimmed : lines) {
        const auto line = untrimmed.trimmed();
        if (line.startsWith(u'['))
            inEntry = line == "[Desktop Entry]"_L1;
        else if (const auto equals = line.indexOf(u'='); inEntry && equals > 0 && !line.startsWith(u'#'))
            entry.insert(line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
    }
    return entry;
}

/// Quoted twice: as an argument of the Exec line, and as a value of the file.
QString execLine(const QString& program)
{
    QString line(u'"');
    for (const auto character : program) {
        switch (character.unicode()) {
        case u'"':
        case u'`':
        case u'$': line += R"(\\)"_L1 + character; break;
        case u'\\': line += R"(\\\\)"_L1; break;
        case u'%': line += "%%"_L1; break;
        case u'\n': line += R"(\n)"_L1; break;
        case u'\r': line += R"(\r)"_L1; break;
        case u'\t': line += R"(\t)"_L1; break;
        default: line += character;
        }
    }
    return line + u'"';
}

std::filesystem::path native(const QString& path)
{
    return QFile::encodeName(path).toStdString();
}

QString words(const std::error_code& error)
{
    return QString::fromLocal8Bit(error.message());
}

} // namespace

AutostartLoginItem::AutostartLoginItem(const QString& configurationFolder, const QString& program)
    : m_folder(configurationFolder + "/autostart"_L1)
    , m_path(m_folder + "/ua.tessak.Nimbarrow.desktop"_L1)
    , m_program(QDir::cleanPath(program))
{
}

bool AutostartLoginItem::isEnabled() const
{
    // What Exec names does not matter: a file of this name is the program's, whichever copy of it made it.
    const auto entry = readEntry(m_path);
    return !entry.value(u"Exec"_s).isEmpty() && entry.value(u"Hidden"_s) != "true"_L1
        && entry.value(u"X-GNOME-Autostart-enabled"_s) != "false"_L1;
}

std::optional<QString> AutostartLoginItem::setEnabled(bool enabled)
{
    const auto failure = enabled ? write() : remove();
    return failure ? std::optional(m_path + ": "_L1 + *failure) : std::nullopt;
}

std::optional<QString> AutostartLoginItem::write() const
{
    std::error_code error;
    std::filesystem::create_directories(native(m_folder), error);
    if (error)
        return words(error);
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.write("[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Nimbarrow\n"
               "Icon=ua.tessak.Nimbarrow\n"
               "Exec="
        + execLine(m_program).toUtf8()
        + "\n"
          "X-GNOME-Autostart-enabled=true\n");
    if (!file.commit())
        return file.errorString();
    return {};
}

std::optional<QString> AutostartLoginItem::remove() const
{
    std::error_code error;
    std::filesystem::remove(native(m_path), error);
    if (error)
        return words(error);
    return {};
}

bool AutostartLoginItem::runsOutsideApplications() const
{
    constexpr std::array folders { "/usr/"_L1, "/opt/"_L1, "/app/"_L1 };
    return std::none_of(folders.begin(), folders.end(),
        [this](QLatin1StringView folder) { return m_program.startsWith(folder); });
}

} // namespace nimbarrow
