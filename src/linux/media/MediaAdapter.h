#pragma once

#include "linux/media/ArtworkFetcher.h"
#include "linux/media/MprisPlayers.h"
#include "mediaprotocol/MediaMessage.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace nimbarrow {

/// Says what plays, one message for each change, and hands commands to the player that it speaks of.
class MediaAdapter final : public QObject {
    Q_OBJECT

public:
    using Send = std::function<void(const MediaMessage& message)>;

    /// Without a download, pictures on the network stay there.
    MediaAdapter(const QDBusConnection& bus, const Clock& clock, Scheduler& scheduler, WorkQueues& queues,
        std::optional<ArtworkDownload> download, Send send);

    void start() { m_players.start(); }
    void carryOut(const MediaCommand& command);

private:
    /// One reading of the chosen player; its parts come one by one.
    struct Round {
        quint64 number = 0;
        PlayerReading reading;
        std::optional<Artwork> artwork;
        bool hasPosition = false;
    };
    /// What was said last of a player.
    struct Report {
        MediaState state;
        QString artworkUrl;
    };

    void playerChanged(const MprisPlayer* player);
    void scheduleUpdate();
    void update();
    void begin();
    void positionRead(std::optional<double> elapsed);
    void finishIfComplete();
    void report(Round round);
    void reportIdle();
    [[nodiscard]] bool saysNothingNew(const MediaState& state) const;

    const Clock& m_clock;
    Scheduler& m_scheduler;
    MprisPlayers m_players;
    ArtworkFetcher m_fetcher;
    const Send m_send;

    Timer m_debounce;
    Timer m_artworkWait;
    QPointer<MprisPlayer> m_player;
    /// The chosen player has something to say that no round has begun with.
    bool m_isOutdated = false;
    std::optional<Round> m_round;
    quint64 m_rounds = 0;
    /// What is reported next counts, even if it follows from what was reported before.
    bool m_mustReport = false;

    std::optional<Report> m_last;
    bool m_isIdleReported = false;
    QString m_sentArtwork;
};

} // namespace nimbarrow
