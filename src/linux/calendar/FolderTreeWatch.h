#pragma once

#include "qt/ThreadedQueue.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>

namespace nimbarrow {

/// Watches a folder and the folders in it, which are looked through in the background. Costs nothing while
/// nothing happens there.
class FolderTreeWatch final : public QObject {
    Q_OBJECT

public:
    /// Changes are told together once nothing more has happened for `rest`, and once when the watch stands.
    /// The folder may come later and go again; the one it is in must be there.
    FolderTreeWatch(QString folder, std::chrono::milliseconds rest);
    ~FolderTreeWatch() override;

Q_SIGNALS:
    void changed();

private:
    void rewatch();
    /// On the queue's thread.
    void watchAll();
    void drain();

    const QString m_folder;
    int m_inotify = -1;
    /// Where the folder is to come; -1 while it is there.
    std::atomic<int> m_parent = -1;
    QSocketNotifier m_notifier;
    QTimer m_rest;
    std::unique_ptr<ThreadedQueue> m_looking;
};

} // namespace nimbarrow
