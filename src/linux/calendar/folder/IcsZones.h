#pragma once

#include "linux/calendar/folder/IcsZone.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <libical/ical.h>
#include <memory>

namespace nimbarrow {

/// What the zones' names in a file mean: the system's zones where the name is one of theirs, else what the
/// file describes.
class IcsZones {
public:
    using Zone = std::shared_ptr<const IcsZone>;

    /// Forgets what the last file described.
    void startFile() { m_described.clear(); }
    /// A VTIMEZONE of the file.
    void add(const QByteArray& component);

    /// Of a property's time; null where it names none that is known, which means the user's.
    [[nodiscard]] Zone of(icalproperty* property) const;

private:
    [[nodiscard]] Zone systemZone(const QString& name) const;

    QHash<QString, Zone> m_described;
    /// Many files describe the same zones in the same words.
    QHash<QByteArray, Zone> m_read;
    mutable QHash<QString, Zone> m_system;
};

} // namespace nimbarrow
