#pragma once

#include <QObject>
#include <QString>
#include <qqmlintegration.h>

#include <optional>

namespace nimbarrow {

/// The interface language that the user chose.
class LanguageChoice {
    Q_GADGET
    QML_NAMED_ELEMENT(Language)
    QML_UNCREATABLE("Only names the choices")

public:
    enum Language { System, Uk, En };
    Q_ENUM(Language)
};

using Language = LanguageChoice::Language;

/// "system", "uk" or "en".
[[nodiscard]] QString rawValue(Language language);

/// None for any other text.
[[nodiscard]] std::optional<Language> languageFromRawValue(QStringView raw);

} // namespace nimbarrow
