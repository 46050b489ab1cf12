#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace nimbarrow {

/// Makes the folders above the file, too. `mode` is added to what files have.
inline void writeFile(const QString& path, const QByteArray& content, QFile::Permissions mode = {})
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()
        || (mode && !file.setPermissions(file.permissions() | mode)))
        qFatal("A file of the test cannot be written.");
}

/// Empty where there is no such file.
inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// A folder of files that ends with the test.
class TestFolder : public QTemporaryDir {
public:
    void write(const QString& relative, const QByteArray& content, QFile::Permissions mode = {}) const
    {
        writeFile(filePath(relative), content, mode);
    }
};

} // namespace nimbarrow
