#include "images/ThumbnailLoader.h"

#include "images/ImageCodec.h"
#include "platform/WorkQueue.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QImage load(const QString& path, int maxPixel)
{
    QFile file(path);
    // Opening a pipe would wait for whoever writes into it.
    if (!QFileInfo(path).isFile() || !file.open(QFile::ReadOnly))
        return {};
    return imagecodec::thumbnail(file, maxPixel);
}

} // namespace

ThumbnailLoader::ThumbnailLoader(WorkQueues& queues, QObject* parent)
    : QObject(parent)
    , m_queue(queues.concurrent(u"ua.tessak.Nimbarrow.thumbnails"_s))
{
}

ThumbnailLoader::~ThumbnailLoader() = default;

QImage ThumbnailLoader::cached(const QUrl& file, int maxPixel) const
{
    return m_cache.find(file.toLocalFile(), maxPixel);
}

void ThumbnailLoader::image(
    const QUrl& file, int maxPixel, QObject* receiver, std::function<void(const QImage&)> done)
{
    if (const auto image = cached(file, maxPixel); !image.isNull()) {
        done(image);
        return;
    }
    const auto path = file.toLocalFile();
    const auto same = std::ranges::find_if(m_loads,
        [&](const auto& load) { return load->path == path && load->maxPixel == maxPixel && !load->isStale; });
    if (same != m_loads.end()) {
        (*same)->waiters.push_back({ receiver, std::move(done) });
        return;
    }
    const auto load = std::make_shared<Load>();
    load->path = path;
    load->maxPixel = maxPixel;
    load->waiters.push_back({ receiver, std::move(done) });
    m_loads << load;
    const auto picture = std::make_shared<QImage>();
    m_queue->run([picture, path, maxPixel] { *picture = nimbarrow::load(path, maxPixel); }, this,
        [this, load, picture] { finish(load, *picture); });
}

void ThumbnailLoader::forget(const QList<QUrl>& files)
{
    for (const auto& file : files) {
        const auto path = file.toLocalFile();
        m_cache.remove(path);
        for (const auto& load : std::as_const(m_loads))
            load->isStale = load->isStale || load->path == path;
    }
}

void ThumbnailLoader::finish(const std::shared_ptr<Load>& load, const QImage& image)
{
    m_loads.removeOne(load);
    if (!image.isNull() && !load->isStale)
        m_cache.insert(load->path, load->maxPixel, image);
    for (const auto& waiter : load->waiters) {
        if (waiter.receiver)
            waiter.done(image);
    }
}

} // namespace nimbarrow
