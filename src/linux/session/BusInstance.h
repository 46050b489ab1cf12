#pragma once

#include "platform/Instance.h"

#include <QString>

#include <optional>
#include <vector>

namespace nimbarrow {

/// The one copy holds a locked file in its data folder, so that no two ever write there, and owns a name on
/// the message bus, for those that have other data. Without a bus, or a data folder, there is a locked file
/// of the session. All of it ends with the process, however it ends.
class BusInstance final : public Instance {
public:
    /// `dataFolder` is made where it is missing.
    explicit BusInstance(QString dataFolder);
    ~BusInstance() override;

    [[nodiscard]] bool anotherIsRunning() override;

private:
    [[nodiscard]] bool findAnother();
    [[nodiscard]] bool anotherHoldsData();
    [[nodiscard]] bool anotherHolds(const QString& path);

    QString m_dataFolder;
    std::optional<bool> m_anotherIsRunning;
    std::vector<int> m_locks;
};

} // namespace nimbarrow
