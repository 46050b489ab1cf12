#include "files/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow::privatefiles {

namespace {

constexpr QFile::Permissions forFiles = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions forFolders = forFiles | QFile::ExeOwner;

/// An open file or folder.
class Descriptor {
public:
    Descriptor(const QByteArray& path, int flags)
        : m_number(::open(path.constData(), flags | O_CLOEXEC, S_IRUSR | S_IWUSR))
        , m_wasOpened(m_number >= 0)
    {
    }
    ~Descriptor() { close(); }
    Q_DISABLE_COPY_MOVE(Descriptor)

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] bool wasOpened() const { return m_wasOpened; }

    [[nodiscard]] bool isMine() const
    {
        struct stat status { };
        return ::fstat(m_number, &status) == 0 && status.st_uid == ::geteuid();
    }

    bool close()
    {
        const auto number = std::exchange(m_number, -1);
        return number >= 0 && ::close(number) == 0;
    }

private:
    int m_number;
    bool m_wasOpened;
};

bool writeAll(int file, const QByteArray& data)
{
    for (qsizetype done = 0; done < data.size();) {
        const auto written = ::write(file, data.constData() + done, static_cast<size_t>(data.size() - done));
        if (written > 0)
            done += written;
        else if (written == 0 || errno != EINTR)
            return false;
    }
    return true;
}

/// Its mode is its owner's word, also where the system would let this program write.
bool isReadOnly(const QByteArray& path)
{
    struct stat status { };
    return ::lstat(path.constData(), &status) == 0 && S_ISREG(status.st_mode)
        && (status.st_mode & S_IWUSR) == 0;
}

QByteArray unfinishedName(const QByteArray& path)
{
    auto name = path + '.';
    for (auto letter = 0; letter < 6; ++letter)
        name += static_cast<char>('a' + QRandomGenerator::global()->bounded(26));
    return name;
}

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

bool makeFolder(const QString& path)
{
    const QFileInfo folder(path);
    QDir().mkpath(folder.path());
    QDir().mkdir(path, forFolders);
    const Descriptor file(QFile::encodeName(path), O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    // A folder that was there before has the mode that somebody else gave it.
    return file.isMine() && ::fchmod(file.number(), S_IRWXU) == 0;
}

std::optional<QByteArray> read(const QString& path, qsizetype maxSize)
{
    // Only of what is open is it certain what it is.
    const Descriptor descriptor(QFile::encodeName(path), O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status { };
    if (::fstat(descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > maxSize)
        return std::nullopt;
    QFile file;
    if (!file.open(descriptor.number(), QFile::ReadOnly))
        return std::nullopt;
    // Room is made for all that is asked for, before anything is read.
    auto data = file.read(std::min<qint64>(status.st_size, maxSize));
    return file.error() == QFile::NoError ? std::optional(std::move(data)) : std::nullopt;
}

bool write(const QString& path, const QByteArray& data)
{
    const auto folder = QFileInfo(path).path();
    // There was no room for it when the program started, or somebody has removed it since.
    if (!QFileInfo::exists(folder))
        makeFolder(folder);
    const Descriptor directory(QFile::encodeName(folder), O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    const auto target = QFile::encodeName(path);
    if (!directory.isMine() || isReadOnly(target)) {
        errno = EACCES;
        return false;
    }
    const auto unfinished = unfinishedName(target);
    Descriptor file(unfinished, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
    // Whatever is put in place is on the disk: a file system may find only then that there is no room.
    if (file.number() >= 0 && ::fchmod(file.number(), S_IRUSR | S_IWUSR) == 0 && writeAll(file.number(), data)
        && ::fsync(file.number()) == 0 && file.close()
        && ::rename(unfinished.constData(), target.constData()) == 0) {
        ::fsync(directory.number());
        return true;
    }
    if (file.wasOpened()) {
        const int why = errno;
        ::unlink(unfinished.constData());
        errno = why;
    }
    return false;
}

bool remove(const QString& path)
{
    const auto folder = QFile::encodeName(QFileInfo(path).path());
    return (Descriptor(folder, O_RDONLY | O_DIRECTORY | O_NONBLOCK).isMine()
               && ::unlink(QFile::encodeName(path).constData()) == 0)
        || (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink());
}

bool tidyFolder(const QString& path)
{
    if (!Descriptor(QFile::encodeName(path), O_RDONLY | O_DIRECTORY | O_NONBLOCK).isMine())
        return false;
    const auto files = QDir(path).entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const auto& file : files) {
        if (isUnfinished(file.fileName()))
            QFile::remove(file.filePath());
        else if ((file.permissions() & ~(forFiles | QFile::ReadUser | QFile::WriteUser)) != 0)
            QFile::setPermissions(file.filePath(), forFiles);
    }
    return true;
}

} // namespace nimbarrow::privatefiles
