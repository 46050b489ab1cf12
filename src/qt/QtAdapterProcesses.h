#pragma once

#include "platform/AdapterProcess.h"

namespace nimbarrow {

/// Companion programs as child processes.
class QtAdapterProcesses final : public AdapterProcesses {
public:
    [[nodiscard]] std::unique_ptr<AdapterProcess> launch(const ProgramCall& call) override;
};

} // namespace nimbarrow
