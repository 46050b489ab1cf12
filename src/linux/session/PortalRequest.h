#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <functional>

namespace nimbarrow {

/// What a portal answered, after it may have asked the user.
struct PortalAnswer {
    enum class Kind {
        Granted,
        /// By the user.
        Refused,
        /// There is no such portal, or it failed.
        Failed,
    };
    Kind kind = Kind::Failed;
    QVariantMap results;
};

/// Asks a portal. `options`, which go last, are completed with what lets the answer find its way back.
/// `answered` runs on the main loop, however long the user takes, unless `receiver` is gone by then.
void askPortal(const QDBusConnection& bus, const QString& interface, const QString& method,
    const QVariantList& arguments, QVariantMap options, QObject* receiver,
    std::function<void(const PortalAnswer& answer)> answered);

/// Asks which version of a portal there is. `answered` runs as above, with 0 where there is none.
void askPortalVersion(const QDBusConnection& bus, const QString& interface, QObject* receiver,
    std::function<void(uint version)> answered);

/// The name by which the bus knows the portals.
inline const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");

/// Connects a slot to a signal of a portal.
void followPortalSignal(const QDBusConnection& bus, const QString& interface, const QString& name,
    QObject* receiver, const char* slot);

/// A new name for what a portal is to make, which nobody else can guess.
[[nodiscard]] QString portalToken();

/// Tells the portals which program this is, by the name of its desktop file. Before any other call of theirs
/// on this connection; portals that do not ask for it refuse it without harm.
void introduceToPortals(const QDBusConnection& bus);

/// A call of a portal that asks nobody.
[[nodiscard]] QDBusMessage portalCall(const QString& interface, const QString& method);

/// The call that ends what a portal has made, by its path and what it is: "Request" or "Session".
[[nodiscard]] QDBusMessage portalClosing(const QString& path, const QString& kind);

} // namespace nimbarrow
