#pragma once

#include "clipboard/ClipboardItem.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace nimbarrow {

class WorkQueue;
class WorkQueues;

/// The history on disk: the index, and the image files that the program writes itself. Main thread; but for
/// load() a queue does the work, one piece at a time and in order.
class HistoryFiles final : public QObject {
    Q_OBJECT

public:
    /// The entries as they are now.
    using Snapshot = std::function<QList<ClipboardItem>()>;
    using Work = std::function<void()>;

    enum class State {
        Good,
        /// Something is not on the disk, or has not gone from it. It is tried again.
        NotSaved,
        /// There was an index that cannot be read; it lies beside the new one.
        OldIndexKept,
    };

    /// `folder` is made where it is missing. The references outlive this object, `snapshot` too.
    HistoryFiles(const QString& folder, Snapshot snapshot, Scheduler& scheduler, WorkQueues& queues);
    /// Waits until everything is saved that is to be.
    ~HistoryFiles() override;

    /// The entries of the index whose images are there, with the paths that lead to them now. Reads the disk
    /// at once. Once, at the start.
    [[nodiscard]] QList<ClipboardItem> load();

    /// Half a second from now, unless there is another change until then.
    void saveSoon();
    void saveNow();
    /// Saves everything and waits for it, a few seconds at most. For the end of the program.
    void flush();
    [[nodiscard]] State state() const { return m_state; }

    [[nodiscard]] const QString& imagesFolder() const { return m_imagesFolder; }
    /// The path for a new image file.
    [[nodiscard]] QString newImagePath() const;
    /// To such a path. Any thread.
    [[nodiscard]] static bool writeImage(const QString& path, const QByteArray& pngData);
    /// Whether an image file that was to be written is there.
    void noteImage(bool isWritten);
    /// Of these files those that are the history's own, and that none of `entries` names, go when it is
    /// saved.
    void removeWithNextSave(const QStringList& paths, const QList<ClipboardItem>& entries);
    /// The name of a file that the history has written itself; empty for any other. May look at the disk when
    /// the file is called like one of the history's.
    [[nodiscard]] QString ownImageName(const QString& path) const;

    /// Runs `work` behind the work on the disk, then `done` on the main thread.
    void run(Work work, QObject* receiver, Work done);

Q_SIGNALS:
    void stateChanged();

private:
    struct Save;

    void tidy(const QList<ClipboardItem>& entries);
    void finishSave(const Save& save);
    void updateState();
    [[nodiscard]] QString currentPath(const QString& imagePath) const;

    QString m_folder;
    QString m_imagesFolder;
    QString m_indexPath;
    Snapshot m_snapshot;
    Scheduler& m_scheduler;
    /// Set while the disk is behind and no save is due at once.
    Timer m_timer;
    bool m_isSaving = false;
    /// As soon as the save that runs is over: there is never more than one that waits.
    bool m_saveAgain = false;
    /// Image files that are to go.
    QSet<QString> m_unwanted;
    State m_state = State::Good;
    bool m_indexFails = false;
    bool m_imagesFail = false;
    bool m_keptOldIndex = false;
    /// While an index that cannot be read stands where the new one is to be. Belongs to the queue.
    std::shared_ptr<bool> m_isUnreadable = std::make_shared<bool>(false);
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow
