#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>

namespace nimbarrow {

/// Watches a folder and the folders in it. Costs nothing while nothing happens there.
class FolderTreeWatch final : public QObject {
    Q_OBJECT

public:
    /// Changes are told together once nothing more has happened for `rest`. The folder may come later and go
    /// again; the one it is in must be there.
    FolderTreeWatch(QString folder, std::chrono::milliseconds rest);
    ~FolderTreeWatch() override;

Q_SIGNALS:
    void changed();

private:
    void watchAll();
    void drain();

    const QString m_folder;
    int m_inotify = -1;
    QSocketNotifier m_notifier;
    QTimer m_rest;
};

} // namespace nimbarrow
