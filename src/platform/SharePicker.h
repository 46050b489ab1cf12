#pragma once

#include "platform/Port.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <functional>
#include <variant>

namespace nimbarrow {

/// A text, or a link or file.
using ShareItem = std::variant<QString, QUrl>;

/// Who can be given something, beside the desktop's default programs.
enum class ShareService {
    /// A new message with it.
    Email,
    /// A program that the user chooses.
    OpenWith,
};

/// Port: gives things to other programs, by the services that the system has for it.
class SharePicker : public Port {
public:
    /// Lets the user choose in the system's own picker. False where there is none: then what `services` names
    /// is shown. `done` runs later, once, when the picker is closed.
    [[nodiscard]] virtual bool present(const QList<ShareItem>& /*items*/, std::function<void()> /*done*/)
    {
        return false;
    }

    /// What can be done with these now, in the order to show it. Answers at once.
    [[nodiscard]] virtual QList<ShareService> services(const QList<ShareItem>& items) const = 0;

    /// Fire and forget: the service shows windows of its own, and nobody waits for them.
    virtual void share(const QList<ShareItem>& items, ShareService service) = 0;
};

} // namespace nimbarrow
