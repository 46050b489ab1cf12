#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace nimbarrow {

/// A folder of files that ends with the test.
class TestFolder : public QTemporaryDir {
public:
    /// Makes the folders above the file. `mode` is added to what files have.
    void write(const QString& relative, const QByteArray& content, QFile::Permissions mode = {}) const
    {
        const auto path = filePath(relative);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()
            || !file.setPermissions(file.permissions() | mode))
            qFatal("A file of the test cannot be written.");
    }
};

} // namespace nimbarrow
