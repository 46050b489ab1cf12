#include "linux/media/ArtworkFetcher.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

constexpr auto longestDownload = 10s;

struct Found {
    QString stamp;
    /// Whether the stamp is another one than before, so that the contents were read.
    bool isNew = false;
    Artwork artwork;
};

QString fileStamp(const QFileInfo& file, const QString& url)
{
    if (!file.isFile())
        return url;
    const auto time = file.lastModified().toMSecsSinceEpoch();
    return QString::number(time) + u' ' + QString::number(file.size()) + u' ' + url;
}

/// Runs on the queue's thread. Only a regular file: a pipe or a device would hold us or never end.
Found look(const QString& url, const QString& lastStamp)
{
    if (url.startsWith("data:"_L1, Qt::CaseInsensitive))
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

ArtworkFetcher::ArtworkFetcher(Scheduler& scheduler, WorkQueues& queues)
    : m_scheduler(scheduler)
    , m_queue(queues.serial(u"ua.tessak.Nimbarrow.artwork"_s))
{
}

ArtworkFetcher::~ArtworkFetcher()
{
    endDownload();
}

void ArtworkFetcher::fetch(const QString& url, Done done)
{
    m_done = std::move(done);
    ++m_fetches;
    if (url != m_downloading)
        endDownload();

    if (url.startsWith("http://"_L1, Qt::CaseInsensitive)
        || url.startsWith("https://"_L1, Qt::CaseInsensitive)) {
        if (url == m_stamp)
            finish(m_stamp, m_artwork);
        else if (url != m_downloading)
            download(url);
    } else if (url.isEmpty()) {
        finish({}, {});
    } else if (url == m_stamp && url.startsWith("data:"_L1, Qt::CaseInsensitive)) {
        finish(m_stamp, m_artwork);
    } else {
        readLocally(url);
    }
}

void ArtworkFetcher::readLocally(const QString& url)
{
    const auto found = std::make_shared<Found>();
    m_queue->run([found, url, stamp = m_stamp] { *found = look(url, stamp); }, this,
        [this, found, fetch = m_fetches] {
            if (fetch == m_fetches)
                finish(found->stamp, found->isNew ? found->artwork : m_artwork);
        });
}

void ArtworkFetcher::download(const QString& url)
{
    // Most players have their pictures on the disk: the network's libraries start for the others only.
    if (!m_network)
        m_network = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest request { QUrl(url) };
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(4);
    m_downloading = url;
    m_reply = m_network->get(request);
    // As much again may wait in the reply, and no more.
    m_reply->setReadBufferSize(Artwork::largest + 1);
    connect(
        m_reply, &QNetworkReply::downloadProgress, this, [reply = m_reply](qint64 received, qint64 total) {
            if (received > Artwork::largest || total > Artwork::largest)
                reply->abort();
        });
    connect(m_reply, &QNetworkReply::finished, this, [this, url] {
        const auto file = m_reply->error() == QNetworkReply::NoError ? m_reply->readAll() : QByteArray();
        endDownload();
        finish(url, artworkOf(file));
    });
    m_downloadEnd = m_scheduler.after(longestDownload, [reply = m_reply] { reply->abort(); });
}

void ArtworkFetcher::endDownload()
{
    m_downloadEnd.cancel();
    m_downloading.clear();
    if (auto* const reply = std::exchange(m_reply, nullptr)) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

void ArtworkFetcher::finish(const QString& stamp, const Artwork& artwork)
{
    m_stamp = stamp;
    m_artwork = artwork;
    if (const auto done = std::exchange(m_done, {}))
        done(m_artwork);
}

} // namespace nimbarrow
