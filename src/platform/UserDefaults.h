#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace nimbarrow {

/// Port: what the user chose, kept over restarts, over a layer of defaults for what the user did not choose.
class UserDefaults : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Values for the keys that the user has set nothing for. They are never written.
    virtual void registerDefaults(const QVariantMap& defaults) = 0;

    /// False for what is no truth value.
    [[nodiscard]] virtual bool boolean(QStringView key) const = 0;
    /// 0 for what is no number.
    [[nodiscard]] virtual qint64 integer(QStringView key) const = 0;
    /// Empty where there is none.
    [[nodiscard]] virtual QString string(QStringView key) const = 0;

    /// `value` is a bool, a qint64 or a QString. It counts at once; the disk follows in a moment.
    virtual void set(QStringView key, const QVariant& value) = 0;

    /// False when the last attempt to keep what was set has failed; it is made again by itself.
    [[nodiscard]] virtual bool isSaved() const { return true; }

    /// Keeps what was set now and waits for it, for at most 2 s. For the end of the program.
    virtual void flush() { }

Q_SIGNALS:
    void isSavedChanged();
};

} // namespace nimbarrow
