#pragma once

#include "platform/Pasteboard.h"

#include <QHash>

#include <utility>

namespace nimbarrow {

/// What somebody offered at one moment, already read; it no longer depends on who offered it.
struct PasteboardSnapshot {
    QStringList types;
    QHash<QString, QByteArray> bytes;
    std::optional<QString> string;
    QList<QUrl> urls;

    /// False when there is nothing to capture, whatever the types say.
    [[nodiscard]] bool hasContent() const { return string || !bytes.isEmpty() || !urls.isEmpty(); }

    [[nodiscard]] QByteArray data(QStringView type) const
    {
        // A text may be long, and its bytes are hardly ever asked for, so it is kept in one form only.
        if (type == pasteboardtype::string)
            return string.value_or(QString()).toUtf8();
        return bytes.value(type.toString());
    }
};

/// A snapshot as whoever captures contents wants it.
class SnapshotContent final : public PasteboardContent {
public:
    explicit SnapshotContent(PasteboardSnapshot snapshot)
        : m_snapshot(std::move(snapshot))
    {
    }

    [[nodiscard]] QStringList types() const override { return m_snapshot.types; }
    [[nodiscard]] QByteArray data(QStringView type) const override { return m_snapshot.data(type); }
    [[nodiscard]] std::optional<QString> string() const override { return m_snapshot.string; }
    [[nodiscard]] QList<QUrl> urls() const override { return m_snapshot.urls; }

private:
    PasteboardSnapshot m_snapshot;
};

} // namespace nimbarrow
