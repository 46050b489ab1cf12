#pragma once

#include <QObject>
#include <QString>
#include <qqmlintegration.h>

#include <optional>

namespace nimbarrow {

/// Makes the enumeration known to the views, as `Language.Uk`.
namespace languagechoice {
Q_NAMESPACE
QML_NAMED_ELEMENT(Language)

/// The interface language that the user chose.
enum class Language { System, Uk, En };
Q_ENUM_NS(Language)
} // namespace languagechoice

using Language = languagechoice::Language;

/// "system", "uk" or "en".
[[nodiscard]] QString rawValue(Language language);

/// None for any other text.
[[nodiscard]] std::optional<Language> languageFromRawValue(QStringView raw);

} // namespace nimbarrow
