#pragma once

#include "files/KeyFile.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"

#include <memory>

namespace nimbarrow {

class WorkQueue;
class WorkQueues;

/// User defaults in the group "General" of one key file that only the user can read. The file is read once
/// and written in the background; a write that failed is tried again until it succeeds.
class SettingsFile final : public UserDefaults {
    Q_OBJECT

public:
    /// What is no regular file, or larger than anything that people write, counts as empty. The other two
    /// outlive it.
    SettingsFile(const QString& path, WorkQueues& queues, Scheduler& scheduler);
    /// Waits for what is being written.
    ~SettingsFile() override;

    void registerDefaults(const QVariantMap& defaults) override;
    [[nodiscard]] bool boolean(QStringView key) const override;
    [[nodiscard]] qint64 integer(QStringView key) const override;
    [[nodiscard]] QString string(QStringView key) const override;
    void set(QStringView key, const QVariant& value) override;
    [[nodiscard]] bool isSaved() const override { return !m_failed; }
    void flush() override;

private:
    void save();
    void saved(bool isWhole);

    QString m_path;
    Scheduler& m_scheduler;
    KeyFile m_file;
    QVariantMap m_registered;
    bool m_isSaving = false;
    /// Since what is being saved was handed over.
    bool m_hasChanged = false;
    bool m_failed = false;
    Timer m_retry;
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow
