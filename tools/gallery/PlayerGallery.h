#pragma once

#include "preferences/L10n.h"

#include <QDir>

namespace nimbarrow {

/// Draws every state of the now-playing column into that folder.
void drawPlayer(const QDir& folder, L10n::Resolved language);

} // namespace nimbarrow
