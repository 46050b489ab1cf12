#pragma once

#include "platform/LoginItem.h"

namespace nimbarrow {

/// A desktop entry in the user's autostart folder. The file is the only state: it is read at every question,
/// so what the user changes elsewhere shows.
class AutostartLoginItem final : public LoginItem {
public:
    /// `program` is what the entry starts, by its absolute path.
    AutostartLoginItem(const QString& configurationFolder, const QString& program);

    [[nodiscard]] bool isEnabled() const override;
    std::optional<QString> setEnabled(bool enabled) override;
    [[nodiscard]] bool runsOutsideApplications() const override;

private:
    [[nodiscard]] std::optional<QString> write() const;
    [[nodiscard]] std::optional<QString> remove() const;

    QString m_folder;
    QString m_path;
    QString m_program;
};

} // namespace nimbarrow
