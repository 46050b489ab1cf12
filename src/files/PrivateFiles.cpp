#include "files/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow::privatefiles {

namespace {

constexpr QFile::Permissions forFiles = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions forFolders = forFiles | QFile::ExeOwner;

/// What a write names its file until it is whole: the final name, a dot and six letters.
bool isUnfinished(const QString& name)
{
    constexpr auto mark = 7;
    if (name.size() < mark || name[name.size() - mark] != u'.')
        return false;
    const auto finalName = name.chopped(mark);
    const auto isLetter = [](QChar character) { return character.isLetter() && character.unicode() < 0x80; };
    return std::ranges::all_of(name.last(mark - 1), isLetter)
        && ((finalName.endsWith(".json"_L1) && finalName != ".json"_L1)
            || (finalName.endsWith(".png"_L1) && finalName != ".png"_L1));
}

} // namespace

void makeFolder(const QString& path)
{
    const QFileInfo folder(path);
    QDir().mkpath(folder.path());
    QDir().mkdir(path, forFolders);
    // A folder that was there before has the mode that somebody else gave it.
    QFile::setPermissions(path, forFolders);
}

std::optional<QByteArray> read(const QString& path, qsizetype maxSize)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QFile::ReadOnly) || file.size() > maxSize)
        return std::nullopt;
    // Room is made for all that is asked for, before anything is read.
    auto data = file.read(std::min<qint64>(file.size(), maxSize));
    return file.error() == QFile::NoError ? std::optional(std::move(data)) : std::nullopt;
}

bool write(const QString& path, const QByteArray& data)
{
    // There was no room for it when the program started, or somebody has removed it since.
    if (const auto folder = QFileInfo(path).path(); !QFileInfo::exists(folder))
        makeFolder(folder);
    QSaveFile file(path);
    if (!file.open(QFile::WriteOnly) || !file.setPermissions(forFiles))
        return false;
    // A commit does not notice that the end of the data, still buffered, found no room on the disk.
    if (file.write(data) != data.size() || !file.flush()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

void tidyFolder(const QString& path)
{
    const auto files = QDir(path).entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const auto& file : files) {
        if (isUnfinished(file.fileName()))
            QFile::remove(file.filePath());
        else if ((file.permissions() & ~(forFiles | QFile::ReadUser | QFile::WriteUser)) != 0)
            QFile::setPermissions(file.filePath(), forFiles);
    }
}

} // namespace nimbarrow::privatefiles
