#pragma once

#include "platform/AdapterCommand.h"

namespace nimbarrow {

/// The script and the library that know what plays. They lie in the program's bundle, and the system's own
/// interpreter runs them.
class MacAdapterCommand final : public AdapterCommand {
public:
    /// `resources` is the bundle's folder of resources.
    explicit MacAdapterCommand(const QString& resources, QString interpreter = defaultInterpreter());

    [[nodiscard]] std::optional<ProgramCall> find() const override;

private:
    [[nodiscard]] static QString defaultInterpreter();

    QString m_interpreter;
    QString m_script;
    QString m_library;
};

} // namespace nimbarrow
