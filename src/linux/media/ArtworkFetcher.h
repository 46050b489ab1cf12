#pragma once

#include "linux/media/Artwork.h"
#include "platform/Scheduler.h"
#include "platform/WorkQueue.h"

#include <QObject>

#include <functional>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace nimbarrow {

/// Gets the picture behind an artwork address: a file, the address itself, or the network.
class ArtworkFetcher final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const Artwork&)>;

    ArtworkFetcher(Scheduler& scheduler, WorkQueues& queues);
    ~ArtworkFetcher() override;
    Q_DISABLE_COPY_MOVE(ArtworkFetcher)

    /// `done` is called once, perhaps at once, unless another fetch begins before. A file that has changed
    /// since the last fetch is read again.
    void fetch(const QString& url, Done done);

private:
    void readLocally(const QString& url);
    void download(const QString& url);
    void endDownload();
    void finish(const QString& stamp, const Artwork& artwork);

    Scheduler& m_scheduler;
    std::unique_ptr<WorkQueue> m_queue;
    std::unique_ptr<QNetworkAccessManager> m_network;
    QNetworkReply* m_reply = nullptr;
    QString m_downloading;
    Timer m_downloadEnd;

    Done m_done;
    quint64 m_fetches = 0;
    /// The address and, of a file, its age and size, with what was found there.
    QString m_stamp;
    Artwork m_artwork;
};

} // namespace nimbarrow
