#pragma once

#include "nowplaying/MediaRemoteSource.h"
#include "nowplaying/MusicSource.h"
#include "nowplaying/NowPlayingSnapshot.h"

#include <QHash>
#include <QObject>
#include <qqmlintegration.h>

#include <functional>

namespace nimbarrow {

/// What plays now, on which program, how far along and how loud; and the commands to it.
class NowPlayingModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool hasTrack READ hasTrack NOTIFY trackChanged FINAL)
    /// Empty while nothing is playing.
    Q_PROPERTY(nimbarrow::NowPlayingTrack track READ trackOrEmpty NOTIFY trackChanged FINAL)
    Q_PROPERTY(QString appName READ appName NOTIFY appChanged FINAL)
    Q_PROPERTY(bool playing READ isPlaying NOTIFY playingChanged FINAL)
    /// A QImage, null while there is none.
    Q_PROPERTY(QVariant artwork READ artworkValue NOTIFY artworkChanged FINAL)
    /// The place in the track can be chosen.
    Q_PROPERTY(bool canSeek READ canSeek NOTIFY canSeekChanged FINAL)
    /// The volume is known and can be set.
    Q_PROPERTY(bool hasVolume READ hasVolume NOTIFY volumeChanged FINAL)
    /// 0 to 100.
    Q_PROPERTY(double volume READ volumeOrZero NOTIFY volumeChanged FINAL)
    Q_PROPERTY(bool permissionDenied READ isPermissionDenied NOTIFY permissionDeniedChanged FINAL)
    /// Seconds into the track. Told of when it jumps or goes on in another way, not while it goes on.
    Q_PROPERTY(double position READ position NOTIFY positionChanged FINAL)

public:
    enum class SourceKind { MediaRemote, Music };

    /// All references outlive the model.
    struct Ports {
        Applications& applications;
        const AdapterCommand& command;
        AdapterProcesses& processes;
        MusicApp& musicApp;
        Scripting& scripting;
        WorkQueues& queues;
        Scheduler& scheduler;
        const Clock& clock;
        /// Covers may come from the network.
        bool fetchesArtwork = true;
    };

    explicit NowPlayingModel(const Ports& ports, QObject* parent = nullptr);

    /// Called when another track follows one, with its artwork or else the program's icon; the image is null
    /// where there is neither.
    std::function<void(const NowPlayingTrack& track, const QImage& image)> onTrackChanged;

    /// Once, at launch.
    void start();

    [[nodiscard]] const std::optional<NowPlayingApp>& app() const { return m_app; }
    [[nodiscard]] const std::optional<NowPlayingTrack>& track() const { return m_track; }
    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }
    [[nodiscard]] const QImage& artwork() const { return m_artwork; }
    [[nodiscard]] QVariant artworkValue() const { return m_artwork; }
    [[nodiscard]] const std::optional<double>& volume() const { return m_volume; }
    [[nodiscard]] bool isPermissionDenied() const { return m_permissionDenied; }
    [[nodiscard]] double position() const;
    [[nodiscard]] SourceKind sourceKind() const { return m_sourceKind; }

    [[nodiscard]] bool hasTrack() const { return m_track.has_value(); }
    [[nodiscard]] NowPlayingTrack trackOrEmpty() const { return m_track.value_or(NowPlayingTrack {}); }
    [[nodiscard]] QString appName() const { return m_app ? m_app->name : QString(); }
    [[nodiscard]] bool canSeek() const { return m_canSeek; }
    [[nodiscard]] bool hasVolume() const { return m_volume.has_value(); }
    [[nodiscard]] double volumeOrZero() const { return m_volume.value_or(0); }

    /// Whenever the column comes to be seen.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void playPause();
    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();
    /// In seconds; what lies beyond the track counts as its nearer end. Nothing where that cannot be chosen.
    Q_INVOKABLE void seek(double to);
    /// Nothing while the volume is unknown.
    Q_INVOKABLE void setVolume(double volume);
    /// Brings the program that plays to the front.
    Q_INVOKABLE void showApp();

    /// "1:05", "1:01:05"; seconds that have begun do not count.
    Q_INVOKABLE [[nodiscard]] static QString timeText(double seconds);
    /// The drawing that stands for a volume; a silent one for less than 1.
    Q_INVOKABLE [[nodiscard]] static QString volumeSymbol(double volume);

Q_SIGNALS:
    void appChanged();
    void trackChanged();
    void playingChanged();
    void artworkChanged();
    void canSeekChanged();
    void volumeChanged();
    void permissionDeniedChanged();
    void positionChanged();

private:
    void use(SourceKind kind);
    void apply(const NowPlayingSnapshot& snapshot);
    void applyApp(const NowPlayingSnapshot& snapshot);
    void applyVolume(const NowPlayingSnapshot& snapshot, bool appChanged);
    void announce(const NowPlayingTrack& track);
    void cache(const QString& id, const QImage& image);
    void setPosition(double base, const QDateTime& date, double rate);
    void setArtwork(const QImage& artwork);
    void publishVolume(std::optional<double> volume);
    [[nodiscard]] bool isMusic() const;

    Applications& m_applications;
    const Clock& m_clock;
    std::optional<NowPlayingApp> m_app;
    std::optional<NowPlayingTrack> m_track;
    bool m_isPlaying = false;
    bool m_canSeek = true;
    QImage m_artwork;
    std::optional<double> m_volume;
    /// The source tells the volume itself, and so takes its changes.
    bool m_volumeIsOfSource = false;
    bool m_permissionDenied = false;
    double m_positionBase = 0;
    QDateTime m_positionDate;
    double m_rate = 1;
    SourceKind m_sourceKind = SourceKind::MediaRemote;
    NowPlayingSource* m_source = nullptr;
    /// Null images count: those tracks have no artwork.
    QHash<QString, QImage> m_artworks;
    std::optional<QString> m_currentArtworkID;
    std::optional<QString> m_lastAnnouncedID;
    MediaRemoteSource m_mediaRemote;
    MusicSource m_music;
};

} // namespace nimbarrow
