#pragma once

#include "linux/media/MprisPlayer.h"
#include "linux/media/PlayerChoice.h"
#include "platform/Scheduler.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <map>
#include <memory>

namespace nimbarrow {

/// All players on the message bus, and which of them a person means.
class MprisPlayers final : public QObject {
    Q_OBJECT

public:
    MprisPlayers(const QDBusConnection& bus, Scheduler& scheduler);

    /// Looks for players and follows their coming and going from now on.
    void start();

    /// Whether every player that was there at the start has been heard.
    [[nodiscard]] bool haveAnswered() const;

    /// Null when nothing plays. Asked anew after each `changed` and `listChanged`.
    [[nodiscard]] MprisPlayer* choose();
    /// Whether the player chosen last has just stopped, as players do between two tracks, and may go on.
    [[nodiscard]] bool isChosenPausing() const;

Q_SIGNALS:
    /// Another player may be the one to choose.
    void listChanged();
    /// A player says something new of itself, or may do so.
    void changed(const nimbarrow::MprisPlayer* player);
    /// The position of the player has jumped, or a command has to be answered with the truth.
    void mustTell(const nimbarrow::MprisPlayer* player);

private:
    struct Entry {
        std::unique_ptr<MprisPlayer> player;
        /// As it was when it last played something, or paused.
        PlayerCandidate candidate;
        bool isActive = false;
        /// Set from the moment it is not, as long as that may be a matter of the next track.
        Timer pause;
    };

    void ownerChanged(const QString& service, const QString& before, const QString& now);
    void add(const QString& service, const QString& owner);
    void update(const QString& service);
    void list();

    QDBusConnection m_bus;
    Scheduler& m_scheduler;
    QDBusServiceWatcher m_names;
    std::map<QString, Entry> m_players;
    QString m_chosen;
    quint64 m_starts = 0;
    /// Questions about who owns which name that are still open.
    int m_asked = 0;
};

} // namespace nimbarrow
