#pragma once

#include "platform/Pasteboard.h"

class QMimeData;

namespace nimbarrow {

/// What was dropped on a window. Everything usable is read at construction, so it outlives the drop's event.
class DroppedContent final : public PasteboardContent {
public:
    explicit DroppedContent(const QMimeData& mime);

    /// The identifiers of what `mime` offers, without asking for any of the content.
    [[nodiscard]] static QStringList typesOf(const QMimeData& mime);

    [[nodiscard]] QStringList types() const override { return m_types; }
    [[nodiscard]] QByteArray data(QStringView type) const override;
    [[nodiscard]] std::optional<QString> string() const override { return m_string; }
    [[nodiscard]] QList<QUrl> urls() const override { return m_urls; }

private:
    QStringList m_types;
    QList<QUrl> m_urls;
    std::optional<QString> m_string;
    QByteArray m_png;
};

} // namespace nimbarrow
