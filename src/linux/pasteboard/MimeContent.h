#pragma once

#include "linux/pasteboard/PasteboardSnapshot.h"

class QMimeData;

namespace nimbarrow {

/// What is dropped on a window. Everything usable is read at construction, so it outlives the drop's event.
class MimeContent final : public PasteboardContent {
public:
    explicit MimeContent(const QMimeData& mime);

    [[nodiscard]] QStringList types() const override { return m_snapshot.types; }
    [[nodiscard]] QByteArray data(QStringView type) const override { return m_snapshot.data(type); }
    [[nodiscard]] std::optional<QString> string() const override { return m_snapshot.string; }
    [[nodiscard]] QList<QUrl> urls() const override { return m_snapshot.urls; }

private:
    PasteboardSnapshot m_snapshot;
};

} // namespace nimbarrow
