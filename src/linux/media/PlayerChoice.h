#pragma once

#include "linux/media/PlayerReading.h"

#include <QList>

namespace nimbarrow {

/// What counts when one of several players is chosen.
struct PlayerCandidate {
    /// Its well-known bus name.
    QString service;
    PlayerReading::Playback playback = PlayerReading::Playback::Stopped;
    /// Larger for the one that began to play later; 0 when it has not played yet.
    quint64 started = 0;
    QString title;
};

/// Whether a bus name is a player itself, and not a program that repeats what other players say.
[[nodiscard]] bool isPlayerName(const QString& service);

/// The bus name of the player that a person means, empty when nothing plays. `current` is the last answer.
[[nodiscard]] QString choosePlayer(const QList<PlayerCandidate>& candidates, const QString& current);

} // namespace nimbarrow
