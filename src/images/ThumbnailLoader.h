#pragma once

#include "images/ThumbnailCache.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <vector>

namespace nimbarrow {

class WorkQueue;
class WorkQueues;

/// Small pictures of image files, made off the main thread and kept in a bounded cache.
class ThumbnailLoader final : public QObject {
    Q_OBJECT

public:
    explicit ThumbnailLoader(WorkQueues& queues, QObject* parent = nullptr);
    ~ThumbnailLoader() override;

    /// Null when it is not in the cache. `maxPixel` is the longest side in pixels.
    [[nodiscard]] QImage cached(const QUrl& file, int maxPixel) const;

    /// `done` gets the picture on the main thread, null when there is none; at once when it is in the cache,
    /// never when `receiver` is gone. Failures are not remembered.
    void image(const QUrl& file, int maxPixel, QObject* receiver, std::function<void(const QImage&)> done);

    /// Forgets every size of these files.
    void forget(const QList<QUrl>& files);
    /// Forgets every picture; views keep those that they show.
    void clear() { m_cache.clear(); }

private:
    struct Waiter {
        QPointer<QObject> receiver;
        std::function<void(const QImage&)> done;
    };
    /// One file being read, for everybody who asks for it meanwhile.
    struct Load {
        QString path;
        int maxPixel = 0;
        /// The file was forgotten since.
        bool isStale = false;
        std::vector<Waiter> waiters;
    };

    void finish(const std::shared_ptr<Load>& load, const QImage& image);

    ThumbnailCache m_cache;
    QList<std::shared_ptr<Load>> m_loads;
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow
