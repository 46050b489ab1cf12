#include "linux/media/ArtworkFetcher.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

struct Found {
    QString stamp;
    /// Whether the stamp is another one than before, so that the contents were read.
    bool isNew = false;
    Artwork artwork;
};

/// Nothing else leaves this computer.
bool isRemote(const QString& url)
{
    return url.startsWith("https:"_L1, Qt::CaseInsensitive);
}

bool isContents(const QString& url)
{
    return url.startsWith("data:"_L1, Qt::CaseInsensitive);
}

QString fileStamp(const QFileInfo& file, const QString& url)
{
    if (!file.isFile())
        return url;
    const auto time = file.lastModified().toMSecsSinceEpoch();
    return QString::number(time) + u' ' + QString::number(file.size()) + u' ' + url;
}

/// Runs on the queue's thread. Only a regular file: a pipe or a device would hold us or never end.
Found foundAt(const QString& url, const QString& lastStamp)
{
    if (isContents(url))
        return { url, true, artworkOf(dataUrlContents(url)) };
    const auto path = url.startsWith(u'/') ? url : QUrl(url).toLocalFile();
    const QFileInfo info(path);
    Found found;
    found.stamp = fileStamp(info, url);
    found.isNew = found.stamp != lastStamp;
    QFile file(path);
    if (found.isNew && info.isFile() && file.open(QIODevice::ReadOnly))
        found.artwork = artworkOf(file.read(Artwork::largest + 1));
    return found;
}

} // namespace

ArtworkFetcher::ArtworkFetcher(WorkQueues& queues, std::optional<ArtworkDownload> download)
    : m_download(std::move(download))
    , m_files(queues.serial(u"ua.tessak.Nimbarrow.artwork"_s))
    , m_downloads(queues.serial(u"ua.tessak.Nimbarrow.download"_s))
{
}

ArtworkFetcher::~ArtworkFetcher()
{
    abandonDownload();
}

void ArtworkFetcher::fetch(const QString& url, Done done)
{
    m_done = std::move(done);
    ++m_fetches;
    if (url != m_downloading)
        abandonDownload();

    const bool isSettled = url == m_stamp;
    if (url.isEmpty() || (isRemote(url) && !m_download))
        finish({}, {});
    else if (isSettled && (isRemote(url) || isContents(url)))
        finish(m_stamp, m_artwork);
    else if (!isRemote(url))
        readLocally(url);
    else if (url != m_downloading)
        download(url);
}

void ArtworkFetcher::readLocally(const QString& url)
{
    const auto found = std::make_shared<Found>();
    m_files->run([found, url, stamp = m_stamp] { *found = foundAt(url, stamp); }, this,
        [this, found, fetch = m_fetches] {
            if (fetch == m_fetches)
                finish(found->stamp, found->isNew ? found->artwork : m_artwork);
        });
}

void ArtworkFetcher::download(const QString& url)
{
    m_downloading = url;
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    const auto artwork = std::make_shared<Artwork>();
    m_downloads->run(
        [artwork, url, download = *m_download, cancelled = m_cancelled] {
            *artwork = artworkOf(download.run(QUrl(url), *cancelled));
        },
        this,
        [this, artwork, url, cancelled = m_cancelled] {
            if (cancelled->load())
                return;
            m_downloading.clear();
            finish(url, *artwork);
        });
}

void ArtworkFetcher::abandonDownload()
{
    if (m_cancelled)
        m_cancelled->store(true);
    m_downloading.clear();
}

void ArtworkFetcher::finish(const QString& stamp, const Artwork& artwork)
{
    m_stamp = stamp;
    m_artwork = artwork;
    if (const auto done = std::exchange(m_done, {}))
        done(m_artwork);
}

} // namespace nimbarrow
