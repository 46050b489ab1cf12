#include "qt/SettingsFile.h"

#include "files/PrivateFiles.h"
#include "platform/WorkQueue.h"

#include <QFile>
#include <QFileInfo>
#include <QSemaphore>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

constexpr qsizetype largestFile = 1'048'576; // bytes
constexpr auto retryDelay = 10s;
constexpr int longestFlush = 2000; // ms

const QByteArray group = "General"_ba;

/// In quotes where it could be taken for anything but the text it is.
QByteArray written(const QString& text)
{
    QByteArray value;
    bool isPlain = true;
    for (const char character : text.toUtf8()) {
        isPlain = isPlain && (QChar::isLetterOrNumber(static_cast<uchar>(character)) || character == '_');
        if (character == '\n')
            value += R"(\n)"_ba;
        else if (character == '"' || character == '\\')
            value += '\\' + QByteArray(1, character);
        else
            value += character;
    }
    return isPlain && !value.isEmpty() ? value : '"' + value + '"';
}

QString read(const QByteArray& value)
{
    if (value.size() < 2 || !value.startsWith('"') || !value.endsWith('"'))
        return QString::fromUtf8(value);
    QByteArray text;
    for (qsizetype i = 1; i < value.size() - 1; ++i) {
        const bool isMarked = value[i] == '\\' && i + 2 < value.size();
        if (isMarked)
            ++i;
        text += isMarked && value[i] == 'n' ? '\n' : value[i];
    }
    return QString::fromUtf8(text);
}

} // namespace

SettingsFile::SettingsFile(const QString& path, WorkQueues& queues, Scheduler& scheduler)
    : m_path(path)
    , m_scheduler(scheduler)
    , m_queue(queues.serial(u"ua.tessak.Nimbarrow.settings"_s))
{
    // Some keep their settings elsewhere, and have a link to them here.
    if (const auto target = QFileInfo(path).canonicalFilePath(); !target.isEmpty())
        m_path = target;
    if (const auto text = privatefiles::read(path, largestFile)) {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        m_file = KeyFile(*text);
    }
}

SettingsFile::~SettingsFile()
{
    if (m_hasChanged)
        save();
}

void SettingsFile::registerDefaults(const QVariantMap& defaults)
{
    m_registered.insert(defaults);
}

QString SettingsFile::string(QStringView key) const
{
    const auto value = m_file.value(group, key.toUtf8());
    return value.isNull() ? m_registered.value(key.toString()).toString() : read(value);
}

bool SettingsFile::boolean(QStringView key) const
{
    // QVariant would take any text but "false" and "0" for true.
    const auto text = string(key);
    return text == "1"_L1 || text.compare("true"_L1, Qt::CaseInsensitive) == 0;
}

qint64 SettingsFile::integer(QStringView key) const
{
    return string(key).toLongLong();
}

void SettingsFile::set(QStringView key, const QVariant& value)
{
    const bool isText = value.metaType() == QMetaType::fromType<QString>();
    const auto text = value.toString();
    m_file.setValue(group, key.toUtf8(), isText ? written(text) : text.toUtf8());
    m_hasChanged = true;
    if (!m_isSaving)
        save();
}

void SettingsFile::save()
{
    m_retry.cancel();
    m_isSaving = true;
    m_hasChanged = false;
    const auto isWhole = std::make_shared<bool>(false);
    m_queue->run(
        [isWhole, path = m_path, text = m_file.text()] { *isWhole = privatefiles::write(path, text); }, this,
        [this, isWhole] { saved(*isWhole); });
}

void SettingsFile::saved(bool isWhole)
{
    m_isSaving = false;
    if (m_failed == isWhole) {
        m_failed = !isWhole;
        Q_EMIT isSavedChanged();
    }
    if (m_hasChanged) {
        save();
    } else if (m_failed) {
        m_hasChanged = true;
        m_retry = m_scheduler.after(retryDelay, [this] { save(); });
    }
}

void SettingsFile::flush()
{
    if (m_hasChanged)
        save();
    const auto done = std::make_shared<QSemaphore>();
    m_queue->run([done] { done->release(); });
    done->tryAcquire(1, longestFlush);
}

} // namespace nimbarrow
