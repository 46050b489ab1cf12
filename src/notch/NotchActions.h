#pragma once

#include <QObject>
#include <QUuid>
#include <qqmlintegration.h>

#include <functional>

namespace nimbarrow {

/// What the views ask of the controller. An action that nobody has installed does nothing.
class NotchActions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the controller")

public:
    using QObject::QObject;

    std::function<void()> onHold;
    std::function<void()> onRelease;
    std::function<void()> onCollapse;
    std::function<void(const QUuid&)> onPreview;

    /// The surface stays expanded until `release` was called as often as `hold`.
    Q_INVOKABLE void hold() const { call(onHold); }
    Q_INVOKABLE void release() const { call(onRelease); }
    Q_INVOKABLE void collapse() const { call(onCollapse); }
    /// Shows an image entry large.
    Q_INVOKABLE void preview(const QUuid& item) const { call(onPreview, item); }
    Q_INVOKABLE void closePreview() const { call(onPreview, QUuid()); }

private:
    template <typename Action, typename... Arguments>
    static void call(const Action& action, const Arguments&... arguments)
    {
        if (action)
            action(arguments...);
    }
};

} // namespace nimbarrow
