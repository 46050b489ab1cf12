#pragma once

#include "linux/media/MprisPlayer.h"

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
    explicit MprisPlayers(const QDBusConnection& bus);

    /// Looks for players and follows their coming and going from now on.
    void start();

    /// Whether every player that was there at the start has been heard.
    [[nodiscard]] bool areSettled() const;

    /// Null when nothing plays. Asked anew after each `changed`.
    [[nodiscard]] MprisPlayer* choose();

Q_SIGNALS:
    void changed();
    /// The position of the player chosen last has jumped.
    void seeked();

private:
    struct Entry {
        std::unique_ptr<MprisPlayer> player;
        quint64 started = 0;
        bool plays = false;
    };

    void ownerChanged(const QString& service, const QString& before, const QString& now);
    void add(const QString& service, const QString& owner);
    void noteStart(const QString& service);
    void list();

    QDBusConnection m_bus;
    QDBusServiceWatcher m_names;
    std::map<QString, Entry> m_players;
    QString m_chosen;
    quint64 m_starts = 0;
    /// Questions about who owns which name that are still open.
    int m_asked = 0;
};

} // namespace nimbarrow
