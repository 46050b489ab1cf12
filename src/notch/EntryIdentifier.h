#pragma once

#include <QObject>
#include <QUuid>
#include <qqml.h>

namespace nimbarrow {

/// Tells the views' type checker what the identifier of an entry is.
struct EntryIdentifier {
    Q_GADGET
    QML_FOREIGN(QUuid)
    QML_ANONYMOUS
};

} // namespace nimbarrow
