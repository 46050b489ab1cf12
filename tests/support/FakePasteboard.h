#pragma once

#include "platform/Pasteboard.h"

#include <QHash>

namespace nimbarrow {

/// A pasteboard that holds what the test puts there.
class FakePasteboard final : public Pasteboard {
public:
    struct Content {
        QHash<QString, QByteArray> data;
        std::optional<QString> string;
        QList<QUrl> urls;
        /// Types that are offered beside those of the above, with nothing behind them.
        QStringList marks;
    };

    bool announces = true;
    Access allowed = Access::Granted;
    Content content;
    QList<PasteboardObject> written;
    int handOvers = 0;

    /// Another program copies.
    void copy(const Content& copied)
    {
        content = copied;
        ++m_changeCount;
        if (announces)
            Q_EMIT changed();
    }

    [[nodiscard]] QStringList types() const override
    {
        auto types = content.data.keys() + content.marks;
        if (content.string)
            types << pasteboardtype::string.toString();
        for (const auto& url : content.urls)
            types << (url.isLocalFile() ? pasteboardtype::fileUrl : pasteboardtype::url).toString();
        return types;
    }
    [[nodiscard]] QByteArray data(QStringView type) const override
    {
        return content.data.value(type.toString());
    }
    [[nodiscard]] std::optional<QString> string() const override { return content.string; }
    [[nodiscard]] QList<QUrl> urls() const override { return content.urls; }
    [[nodiscard]] Access access() const override { return allowed; }
    [[nodiscard]] int changeCount() const override { return m_changeCount; }
    [[nodiscard]] bool announcesChanges() const override { return announces; }

    /// The content is what was written, as another program would read it.
    void write(const QList<PasteboardObject>& objects) override
    {
        written = objects;
        content = {};
        for (const auto& object : objects) {
            if (object.string)
                content.string = object.string;
            if (object.url)
                content.urls << *object.url;
        }
        ++m_changeCount;
    }

    void handOver() override { ++handOvers; }

private:
    int m_changeCount = 7;
};

} // namespace nimbarrow
