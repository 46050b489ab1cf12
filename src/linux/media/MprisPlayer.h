#pragma once

#include "linux/media/PlayerReading.h"
#include "mediaprotocol/MediaCommand.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QObject>

#include <functional>
#include <optional>

namespace nimbarrow {

/// One player on the message bus: what it says of itself, and what it can be asked to do. Nothing here waits.
class MprisPlayer final : public QObject {
    Q_OBJECT

public:
    /// `owner` is the unique bus name behind the well-known one.
    MprisPlayer(const QDBusConnection& bus, QString owner);

    [[nodiscard]] QString owner() const { return m_owner; }
    /// Whether it has answered, or has had its time to.
    [[nodiscard]] bool hasAnswered() const { return m_hasAnswered; }
    [[nodiscard]] const PlayerReading& reading() const { return m_reading; }

    /// `done` gets seconds, or none when the player does not know or does not answer soon; it is not called
    /// when the player is gone by then.
    void position(const std::function<void(std::optional<double>)>& done);
    /// `commandEnded` follows; after several in a row, once.
    void carryOut(const MediaCommand& command);

Q_SIGNALS:
    void changed();
    /// The position has jumped.
    void seeked();
    /// The reading is the one after a command, which may have changed nothing.
    void commandEnded();

private Q_SLOTS:
    void propertiesChanged(
        const QString& interface, const QVariantMap& changed, const QStringList& invalidated);
    void positionJumped();

private:
    using Answer = std::function<void(const QDBusMessage&)>;
    void ask(const QDBusMessage& question, int patience, const Answer& answer);
    [[nodiscard]] QDBusMessage call(
        const QString& interface, const QString& method, const QVariantList& arguments = {}) const;
    void readAll();
    void readProcess();
    void readVolumeAccess();
    void setProperties(const QVariantMap& properties);

    void endCommand();
    void seek(double seconds);
    void seekBy(double target);
    void setVolume(double percent);

    QDBusConnection m_bus;
    const QString m_owner;
    QVariantMap m_properties;
    PlayerReading m_reading;
    qint32 m_pid = 0;
    bool m_hasAnswered = false;
    bool m_isReading = false;
    bool m_mustReadAgain = false;
    bool m_hasCommandEnded = false;
    bool m_volumeIsFixed = false;
    bool m_settingVolume = false;
    /// The last one asked for while the player still takes the one before.
    std::optional<double> m_nextVolume;
};

} // namespace nimbarrow
