#pragma once

#include "platform/Port.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

#include <functional>
#include <memory>

namespace nimbarrow {

/// One service of a message bus that can keep something from happening, and how it is asked to.
struct InhibitionService {
    /// What the service gave. Dropping it frees only what lies in this process.
    class Grant : public Port {
    public:
        /// Gives it back to the service, if that still is the one that gave it.
        virtual void release() { }
    };

    QDBusConnection bus;
    /// Well-known name of the service.
    QString name;
    std::function<QDBusMessage(const QString& reason)> question;
    /// Null when the answer makes no sense.
    std::function<std::unique_ptr<Grant>(const QDBusMessage& answer)> grant;
};

} // namespace nimbarrow
