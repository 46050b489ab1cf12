#pragma once

#include "platform/FolderEvents.h"

namespace nimbarrow {

/// Folder events as the kernel tells them.
class MacFolderEvents final : public FolderEvents {
public:
    [[nodiscard]] std::unique_ptr<Watch> watch(const QString& folder, std::function<void()> changed) override;
};

} // namespace nimbarrow
