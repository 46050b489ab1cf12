#include "preferences/Language.h"

#include <array>
#include <utility>

namespace nimbarrow {

namespace {

constexpr std::array<std::pair<Language, QStringView>, 3> rawValues { {
    { Language::System, u"system" },
    { Language::Uk, u"uk" },
    { Language::En, u"en" },
} };

} // namespace

QString rawValue(Language language)
{
    for (const auto& [candidate, raw] : rawValues) {
        if (candidate == language)
            return raw.toString();
    }
    Q_UNREACHABLE();
    return {};
}

std::optional<Language> languageFromRawValue(QStringView raw)
{
    for (const auto& [language, candidate] : rawValues) {
        if (candidate == raw)
            return language;
    }
    return std::nullopt;
}

} // namespace nimbarrow
