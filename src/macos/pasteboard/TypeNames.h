#pragma once

#include <QString>
#include <QStringList>

/// The names by which programs of this system offer content. Most are the program's own identifiers; the rest
/// are older names of the same things, and marks that some programs have of their own.
namespace nimbarrow::typenames {

/// The program's identifier, or the name itself where the program has none.
[[nodiscard]] QString identifierOf(QStringView name);

/// The identifiers of everything that is offered, each once, in the owner's order.
[[nodiscard]] QStringList identifiersOf(const QStringList& names);

/// The first of the offered names that stands for `identifier`; empty when there is none.
[[nodiscard]] QString nameOf(QStringView identifier, const QStringList& offered);

/// Whether one of the names marks a content that nobody is to record.
[[nodiscard]] bool isMarked(const QStringList& names);

} // namespace nimbarrow::typenames
