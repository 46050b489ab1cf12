#pragma once

#include "platform/UserDefaults.h"

namespace nimbarrow {

/// The program's domain of the user-defaults database.
class MacUserDefaults final : public UserDefaults {
public:
    void registerDefaults(const QVariantMap& defaults) override;
    [[nodiscard]] bool boolean(QStringView key) const override;
    [[nodiscard]] qint64 integer(QStringView key) const override;
    [[nodiscard]] QString string(QStringView key) const override;
    void set(QStringView key, const QVariant& value) override;
};

} // namespace nimbarrow
