#pragma once

#include <QString>

namespace nimbarrow::adapteroptions {

/// The companion leaves pictures that lie on the network where they are.
inline const auto withoutNetwork = QStringLiteral("--without-network");

} // namespace nimbarrow::adapteroptions
