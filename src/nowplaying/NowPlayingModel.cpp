#include "nowplaying/NowPlayingModel.h"

#include "platform/Applications.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr auto mostArtworks = 9;

} // namespace

NowPlayingModel::NowPlayingModel(const Ports& ports, QObject* parent)
    : QObject(parent)
    , m_applications(ports.applications)
    , m_clock(ports.clock)
    , m_positionDate(ports.clock.wallTime())
    , m_mediaRemote({ ports.command, ports.processes, ports.applications, ports.scheduler, ports.clock,
          ports.queues, ports.fetchesArtwork })
    , m_music({ ports.musicApp, ports.scripting, ports.clock, ports.queues })
{
}

void NowPlayingModel::start()
{
    for (auto* const source :
        { static_cast<NowPlayingSource*>(&m_mediaRemote), static_cast<NowPlayingSource*>(&m_music) }) {
        source->onSnapshot = [this](const NowPlayingSnapshot& snapshot) { apply(snapshot); };
        source->onArtwork = [this](const QString& id, const QImage& image) { cache(id, image); };
    }
    m_mediaRemote.onUnavailable = [this] { use(SourceKind::Music); };
    m_music.onVolume = [this](std::optional<double> volume) { publishVolume(volume); };
    m_music.onPermissionDenied = [this](bool denied) {
        if (std::exchange(m_permissionDenied, denied) != denied)
            Q_EMIT permissionDeniedChanged();
    };
    use(SourceKind::MediaRemote);
}

void NowPlayingModel::use(SourceKind kind)
{
    if (m_source != nullptr)
        m_source->stop();
    m_sourceKind = kind;
    m_volumeIsOfSource = false;
    if (kind == SourceKind::Music)
        m_source = &m_music;
    else
        m_source = &m_mediaRemote;
    m_source->start();
}

double NowPlayingModel::position() const
{
    if (!m_track)
        return 0;
    const auto milliseconds = m_isPlaying ? m_positionDate.msecsTo(m_clock.wallTime()) : 0;
    const auto advance = static_cast<double>(milliseconds) / 1000 * m_rate;
    return std::min(std::max(m_positionBase + advance, 0.0), m_track->duration);
}

void NowPlayingModel::refresh()
{
    if (m_source != nullptr)
        m_source->refresh();
    if (m_sourceKind == SourceKind::MediaRemote && isMusic())
        m_music.refreshVolume();
}

void NowPlayingModel::playPause()
{
    if (m_source != nullptr)
        m_source->playPause();
}

void NowPlayingModel::next()
{
    if (m_source != nullptr)
        m_source->next();
}

void NowPlayingModel::previous()
{
    if (m_source != nullptr)
        m_source->previous();
}

void NowPlayingModel::seek(double to)
{
    if (!m_track || !m_canSeek || std::isnan(to))
        return;
    setPosition(std::clamp(to, 0.0, m_track->duration), m_clock.wallTime(), m_rate);
    if (m_source != nullptr)
        m_source->seek(m_positionBase);
}

void NowPlayingModel::setVolume(double volume)
{
    if (!m_volume || std::isnan(volume))
        return;
    publishVolume(std::clamp(volume, 0.0, 100.0));
    if (m_volumeIsOfSource)
        m_source->setVolume(volume);
    else
        m_music.setVolume(volume);
}

void NowPlayingModel::showApp()
{
    if (!m_app)
        return;
    if (const auto program = m_applications.withProcess(m_app->pid))
        m_applications.activate(*program);
}

QString NowPlayingModel::timeText(double seconds)
{
    // Nothing that is played takes longer; a number of any size has to become a text.
    const auto whole = static_cast<int>(std::clamp(seconds, 0.0, 1e6));
    const auto twoDigits = [](int number) { return QString::number(number).rightJustified(2, u'0'); };
    const auto minutes = whole / 60 % 60;
    const auto end = u':' + twoDigits(whole % 60);
    if (whole < 3600)
        return QString::number(minutes) + end;
    return QString::number(whole / 3600) + u':' + twoDigits(minutes) + end;
}

QString NowPlayingModel::volumeSymbol(double volume)
{
    if (volume < 1)
        return u"speaker.slash.fill"_s;
    if (volume < 40)
        return u"speaker.wave.1.fill"_s;
    return volume < 75 ? u"speaker.wave.2.fill"_s : u"speaker.wave.3.fill"_s;
}

void NowPlayingModel::apply(const NowPlayingSnapshot& snapshot)
{
    const auto appChanged = m_app != snapshot.app;
    applyApp(snapshot);
    if (std::exchange(m_isPlaying, snapshot.isPlaying) != snapshot.isPlaying)
        Q_EMIT playingChanged();
    if (std::exchange(m_canSeek, snapshot.canSeek) != snapshot.canSeek)
        Q_EMIT canSeekChanged();
    const auto trackChanged
        = m_track.has_value() != snapshot.track.has_value() || (m_track && m_track->id != snapshot.track->id);
    const auto trackDiffers = m_track != snapshot.track;
    m_track = snapshot.track;
    m_currentArtworkID = snapshot.artworkID;
    setPosition(snapshot.elapsed, snapshot.date, snapshot.rate);
    if (trackDiffers)
        Q_EMIT this->trackChanged();
    setArtwork(snapshot.artworkID ? m_artworks.value(*snapshot.artworkID) : QImage());
    applyVolume(snapshot, appChanged);
    if (trackChanged && m_track)
        announce(*m_track);
}

void NowPlayingModel::applyApp(const NowPlayingSnapshot& snapshot)
{
    const auto before = appName();
    const auto isOther = m_app != snapshot.app;
    m_app = snapshot.app;
    if (isOther || before != appName())
        Q_EMIT appChanged();
}

void NowPlayingModel::applyVolume(const NowPlayingSnapshot& snapshot, bool appChanged)
{
    const auto wasOfSource = std::exchange(m_volumeIsOfSource, snapshot.volume.has_value());
    if (m_volumeIsOfSource)
        publishVolume(std::clamp(*snapshot.volume, 0.0, 100.0));
    else if ((appChanged || wasOfSource) && !isMusic())
        publishVolume({});
    else if (appChanged)
        m_music.refreshVolume();
}

void NowPlayingModel::announce(const NowPlayingTrack& track)
{
    // The first track that is seen was playing before anybody looked.
    const auto isAnother = m_lastAnnouncedID && *m_lastAnnouncedID != track.id;
    m_lastAnnouncedID = track.id;
    if (!isAnother || !onTrackChanged)
        return;
    const auto icon = m_app ? m_app->icon : QImage();
    onTrackChanged(track, m_artwork.isNull() ? icon : m_artwork);
}

void NowPlayingModel::cache(const QString& id, const QImage& image)
{
    if (m_artworks.size() >= mostArtworks)
        m_artworks.clear();
    m_artworks.insert(id, image);
    if (m_currentArtworkID == id)
        setArtwork(image);
}

void NowPlayingModel::setPosition(double base, const QDateTime& date, double rate)
{
    m_positionBase = base;
    m_positionDate = date;
    m_rate = rate;
    Q_EMIT positionChanged();
}

void NowPlayingModel::setArtwork(const QImage& artwork)
{
    // The same picture shares its pixels, so comparing those would only cost time.
    if (m_artwork.cacheKey() == artwork.cacheKey())
        return;
    m_artwork = artwork;
    Q_EMIT artworkChanged();
}

void NowPlayingModel::publishVolume(std::optional<double> volume)
{
    if (std::exchange(m_volume, volume) != volume)
        Q_EMIT volumeChanged();
}

bool NowPlayingModel::isMusic() const
{
    return m_app && m_app->bundleID == MusicSource::bundleID;
}

} // namespace nimbarrow
