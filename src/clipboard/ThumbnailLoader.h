#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

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

    /// Forgets every size of a file.
    void forget(const QUrl& file);

private:
    // The implementer of ThumbnailLoader.cpp shapes this part.
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow
