#include "qt/QSettingsDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

} // namespace

QSettingsDefaults::QSettingsDefaults(const QString& path)
    : m_settings(path, QSettings::IniFormat)
{
    if (QFile::exists(path))
        QFile::setPermissions(path, ownerOnly);
}

void QSettingsDefaults::registerDefaults(const QVariantMap& defaults)
{
    m_registered.insert(defaults);
}

QVariant QSettingsDefaults::value(QStringView key) const
{
    return m_settings.value(key, m_registered.value(key.toString()));
}

bool QSettingsDefaults::boolean(QStringView key) const
{
    // QVariant would take any text but "false" and "0" for true.
    const auto text = value(key).toString();
    return text == "1"_L1 || text.compare("true"_L1, Qt::CaseInsensitive) == 0;
}

qint64 QSettingsDefaults::integer(QStringView key) const
{
    return value(key).toString().toLongLong();
}

QString QSettingsDefaults::string(QStringView key) const
{
    return value(key).toString();
}

void QSettingsDefaults::set(QStringView key, const QVariant& value)
{
    makePrivateFile();
    m_settings.setValue(key, value);
}

void QSettingsDefaults::makePrivateFile() const
{
    const auto path = m_settings.fileName();
    if (QFile::exists(path))
        return;
    // QSettings keeps the mode of a file that is there. Where this fails it fails there too.
    QDir().mkpath(QFileInfo(path).path());
    [[maybe_unused]] const bool made = QFile(path).open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly);
}

} // namespace nimbarrow
