#pragma once

#include "linux/session/InheritedState.h"
#include "platform/SharePicker.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class QDBusUnixFileDescriptor;

namespace nimbarrow {

class WorkQueue;
class WorkQueues;

/// Shares by the desktop's portals; where they send no mail, by the tool that opens the user's mail program.
class PortalSharePicker final : public SharePicker {
public:
    /// Asks `bus` in the background which portals there are. `queues` outlives the picker.
    PortalSharePicker(InheritedState inherited, std::optional<QDBusConnection> bus, WorkQueues& queues);
    ~PortalSharePicker() override;

    [[nodiscard]] QList<ShareService> services(const QList<ShareItem>& items) const override;
    void share(const QList<ShareItem>& items, ShareService service) override;

private:
    using Files = QList<QDBusUnixFileDescriptor>;

    [[nodiscard]] bool hasMailTool(const QList<ShareItem>& items) const;
    void composeByPortal(const QList<ShareItem>& items);
    void composeByTool(const QList<ShareItem>& items) const;
    void openWith(const QUrl& url);
    /// Opens files where it may take its time. `opened` runs on the main thread with those that could be.
    void openFiles(const QStringList& paths, std::function<void(const Files&)> opened);
    void ask(const QString& interface, const QString& method, const QVariantList& arguments,
        const QVariantMap& options, std::function<void()> failed);

    InheritedState m_inherited;
    std::optional<QDBusConnection> m_bus;
    /// None of these portals until they have answered.
    uint m_emailVersion = 0;
    uint m_openVersion = 0;
    std::unique_ptr<WorkQueue> m_opening;
    /// Owns the questions that are on their way. Goes first, and nothing is answered any more.
    QObject m_questions;
};

} // namespace nimbarrow
