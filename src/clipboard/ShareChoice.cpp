#include "clipboard/ShareChoice.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

ShareChoice ShareChoice::make(Action action)
{
    switch (action) {
    case Action::Email: return { action, u"envelope"_s, L10n::Key::ShareEmail };
    case Action::OpenWith: return { action, u"square.grid.2x2"_s, L10n::Key::ShareOpenWith };
    case Action::ShowInFolder: return { action, u"folder"_s, L10n::Key::ShareShowInFolder };
    case Action::Open: return { action, u"arrow.up.forward.app"_s, L10n::Key::ShareOpen };
    }
    Q_UNREACHABLE();
    return {};
}

} // namespace nimbarrow
