#pragma once

#include "platform/UserDefaults.h"

namespace nimbarrow {

/// User defaults in memory.
class FakeUserDefaults final : public UserDefaults {
public:
    /// What the user has set.
    QVariantMap values;

    void registerDefaults(const QVariantMap& defaults) override { m_defaults = defaults; }
    [[nodiscard]] bool boolean(QStringView key) const override { return value(key).toBool(); }
    [[nodiscard]] qint64 integer(QStringView key) const override { return value(key).toLongLong(); }
    [[nodiscard]] QString string(QStringView key) const override { return value(key).toString(); }
    void set(QStringView key, const QVariant& value) override { values.insert(key.toString(), value); }

    [[nodiscard]] bool isSaved() const override { return !m_fails; }

    /// From now on the disk takes nothing, or everything.
    void fail(bool fails)
    {
        m_fails = fails;
        Q_EMIT isSavedChanged();
    }

private:
    [[nodiscard]] QVariant value(QStringView key) const
    {
        const auto name = key.toString();
        return values.value(name, m_defaults.value(name));
    }

    QVariantMap m_defaults;
    bool m_fails = false;
};

} // namespace nimbarrow
