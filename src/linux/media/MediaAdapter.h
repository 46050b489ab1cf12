#pragma once

#include "linux/media/AdapterMessages.h"
#include "linux/media/ArtworkFetcher.h"
#include "linux/media/MprisPlayers.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace nimbarrow {

/// Tells what plays in lines, one for each change, and hands commands to the player that it tells of.
class MediaAdapter final : public QObject {
    Q_OBJECT

public:
    using Send = std::function<void(const QByteArray& line)>;

    MediaAdapter(
        const QDBusConnection& bus, const Clock& clock, Scheduler& scheduler, WorkQueues& queues, Send send);

    void start();
    void carryOut(const MediaCommand& command);

private:
    /// One look at the player that is told of; its answers come one by one.
    struct Round {
        MediaState state;
        std::optional<Artwork> artwork;
        bool positionKnown = false;
    };

    void changed();
    void look();
    void goOn();
    void tell();
    void tellIdle();
    [[nodiscard]] double now() const;

    const Clock& m_clock;
    Scheduler& m_scheduler;
    MprisPlayers m_players;
    ArtworkFetcher m_fetcher;
    const Send m_send;

    Timer m_debounce;
    Timer m_patience;
    QPointer<MprisPlayer> m_player;
    Round m_round;
    quint64 m_rounds = 0;
    bool m_jumped = false;

    /// What was told last; nothing before the first line.
    std::optional<MediaState> m_told;
    bool m_toldIdle = false;
    QString m_toldArtwork;
};

} // namespace nimbarrow
