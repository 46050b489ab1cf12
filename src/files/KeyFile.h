#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

#include <utility>

namespace nimbarrow {

/// A text of groups with keys and values, as desktop entries and settings files are: `[Group]`, then
/// `key=value` a line. What it does not understand it keeps.
class KeyFile {
public:
    KeyFile() = default;
    explicit KeyFile(const QByteArray& text);

    /// As it stands in the text, escapes and all, without the spaces around it; null where there is none. Of
    /// several the last counts.
    [[nodiscard]] QByteArray value(const QByteArray& group, const QByteArray& key) const;

    /// `value` is one line. A group that is new stands at the end.
    void setValue(const QByteArray& group, const QByteArray& key, const QByteArray& value);

    [[nodiscard]] QByteArray text() const;

private:
    QList<QByteArray> m_lines;
    /// Line numbers, by group and key.
    QHash<std::pair<QByteArray, QByteArray>, qsizetype> m_places;
};

} // namespace nimbarrow
