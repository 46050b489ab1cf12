#pragma once

#include "platform/DropReader.h"
#include "platform/Pasteboard.h"

namespace nimbarrow {

/// A desktop that shows no program what others copy.
class NoPasteboard final : public Pasteboard {
    Q_OBJECT

public:
    using Pasteboard::Pasteboard;

    [[nodiscard]] Access access() const override { return Access::Denied; }
    [[nodiscard]] int changeCount() const override { return 0; }
    [[nodiscard]] bool announcesChanges() const override { return true; }
    void write(const QList<PasteboardObject>& /*objects*/) override { }
    void handOver() override { }

    [[nodiscard]] QStringList types() const override { return {}; }
    [[nodiscard]] QByteArray data(QStringView /*type*/) const override { return {}; }
    [[nodiscard]] std::optional<QString> string() const override { return {}; }
    [[nodiscard]] QList<QUrl> urls() const override { return {}; }
};

/// Takes no drop.
class NoDropReader final : public DropReader {
public:
    [[nodiscard]] QStringList types(const QMimeData& /*drag*/) const override { return {}; }
    [[nodiscard]] std::unique_ptr<PasteboardContent> read(const QMimeData& /*drop*/) const override
    {
        return std::make_unique<NoPasteboard>();
    }
};

} // namespace nimbarrow
