#pragma once

#include "preferences/L10n.h"

#include <QObject>
#include <QString>

namespace nimbarrow {

/// One thing that can be done with what is shared.
class ShareChoice {
    Q_GADGET
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(int titleKey READ titleKey)

public:
    enum class Action { Email, OpenWith, ShowInFolder, Open };

    Action action = Action::Email;
    QString symbol;
    L10n::Key title = L10n::Key::Share;

    [[nodiscard]] static ShareChoice make(Action action)
    {
        switch (action) {
        case Action::Email: return { action, QStringLiteral("envelope"), L10n::Key::ShareEmail };
        case Action::OpenWith: return { action, QStringLiteral("square.grid.2x2"), L10n::Key::ShareOpenWith };
        case Action::ShowInFolder: return { action, QStringLiteral("folder"), L10n::Key::ShareShowInFolder };
        case Action::Open: return { action, QStringLiteral("arrow.up.forward.app"), L10n::Key::ShareOpen };
        }
        Q_UNREACHABLE();
        return {};
    }

    /// Of the title, in `L10n.texts`.
    [[nodiscard]] int titleKey() const { return static_cast<int>(title); }
};

} // namespace nimbarrow
