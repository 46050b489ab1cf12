#pragma once

#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

/// Finds the web links that people paste into texts: plain, in brackets, quotes or HTML, with punctuation
/// behind them, or wrapped into the redirect of a mail filter.
namespace nimbarrow::linkdetector {

/// Calls `found` for each link in the order of the text until it returns true. A host that stands without a
/// scheme counts where `isKnownHost` says so; it gets the lower-case host. Takes time in proportion to the
/// text.
void visit(QStringView text, const std::function<bool(const QString& host)>& isKnownHost,
    const std::function<bool(const QUrl& link)>& found);

/// What a mail filter's redirect leads to; every other link as it is.
[[nodiscard]] QUrl unwrapped(const QUrl& link);

} // namespace nimbarrow::linkdetector
