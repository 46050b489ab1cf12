#pragma once

#include "platform/UserDefaults.h"

#include <QSettings>

namespace nimbarrow {

/// User defaults in one INI file that only the user can read. The file is written by the event loop.
class QSettingsDefaults final : public UserDefaults {
public:
    explicit QSettingsDefaults(const QString& path);

    void registerDefaults(const QVariantMap& defaults) override;
    [[nodiscard]] bool boolean(QStringView key) const override;
    [[nodiscard]] qint64 integer(QStringView key) const override;
    [[nodiscard]] QString string(QStringView key) const override;
    void set(QStringView key, const QVariant& value) override;

private:
    [[nodiscard]] QVariant value(QStringView key) const;
    void makePrivateFile() const;

    QSettings m_settings;
    QVariantMap m_registered;
};

} // namespace nimbarrow
