#pragma once

#include "linux/media/Artwork.h"
#include "linux/media/ArtworkDownload.h"
#include "platform/WorkQueue.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace nimbarrow {

/// Gets the picture behind an artwork address: a file, the address itself, or the network.
class ArtworkFetcher final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const Artwork&)>;

    /// Without a download nothing comes from the network.
    ArtworkFetcher(WorkQueues& queues, std::optional<ArtworkDownload> download);
    ~ArtworkFetcher() override;
    Q_DISABLE_COPY_MOVE(ArtworkFetcher)

    /// `done` is called once, perhaps at once, unless another fetch begins before. A file that has changed
    /// since the last fetch is read again.
    void fetch(const QString& url, Done done);

private:
    void readLocally(const QString& url);
    void download(const QString& url);
    void abandonDownload();
    void finish(const QString& stamp, const Artwork& artwork);

    const std::optional<ArtworkDownload> m_download;
    /// The address that is being downloaded, and what ends that.
    QString m_downloading;
    std::shared_ptr<std::atomic<bool>> m_cancelled;

    Done m_done;
    quint64 m_fetches = 0;
    /// The address and, of a file, its age and size, with what was found there.
    QString m_stamp;
    Artwork m_artwork;

    /// Files do not wait for the network. Last, so that their work has ended before anything goes.
    std::unique_ptr<WorkQueue> m_files;
    std::unique_ptr<WorkQueue> m_downloads;
};

} // namespace nimbarrow
