#include "linux/session/AutostartLoginItem.h"

#include "files/KeyFile.h"
#include "files/PrivateFiles.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr qsizetype largestEntry = 65'536; // bytes

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
    const KeyFile file(privatefiles::read(m_path, largestEntry).value_or(QByteArray()));
    const auto value = [&file](const char* key) { return file.value("Desktop Entry", key); };
    return !value("Exec").isEmpty() && value("Hidden") != "true"
        && value("X-GNOME-Autostart-enabled") != "false";
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
    const auto entry = "[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Nimbarrow\n"
                       "Icon=ua.tessak.Nimbarrow\n"
                       "Exec="
        + execLine(m_program).toUtf8()
        + "\n"
          "X-GNOME-Autostart-enabled=true\n";
    errno = 0;
    if (!privatefiles::write(m_path, entry))
        return words(std::error_code(errno != 0 ? errno : EIO, std::generic_category()));
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
