#pragma once

#include "linux/session/BusReport.h"
#include "platform/Instance.h"

#include <QDBusContext>
#include <QString>
#include <QVariantMap>

#include <optional>
#include <vector>

namespace nimbarrow {

/// The one copy holds a locked file in its data folder, so that no two ever write there, and owns a name on
/// the message bus, for those that have other data. Under that name it answers as desktops expect of a
/// program: org.freedesktop.Application. Without a bus, or a data folder, there is a locked file of the
/// session, and nobody to ask. All of it ends with the process, however it ends.
class BusInstance final : public Instance, protected QDBusContext {
    Q_OBJECT

public:
    /// `dataFolder` is made where it is missing.
    explicit BusInstance(QString dataFolder);
    ~BusInstance() override;

    [[nodiscard]] bool anotherIsRunning() override;
    [[nodiscard]] bool ask(Request request) override;
    [[nodiscard]] std::optional<QString> askForReport() override;
    void setReport(std::function<QString()> report) override;

    // NOLINTBEGIN(readability-identifier-naming): as the bus has them.
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& links, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(
        const QString& action, const QVariantList& parameters, const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    [[nodiscard]] bool findAnother();
    [[nodiscard]] bool anotherHoldsData();
    [[nodiscard]] bool anotherHolds(const QString& path);

    QString m_dataFolder;
    std::optional<bool> m_anotherIsRunning;
    std::vector<int> m_locks;
    BusReport m_report;
};

} // namespace nimbarrow
