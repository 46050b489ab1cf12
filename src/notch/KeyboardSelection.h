#pragma once

#include "clipboard/ClipboardItem.h"

#include <QList>
#include <QUuid>

#include <optional>

namespace nimbarrow {

class ClipboardStore;
class NotchState;

/// Which entry the arrow keys have reached: one in the list of texts, links and files, or one in the strip of
/// images. Always an entry that exists.
class KeyboardSelection final {
public:
    enum class List { Text, Images };
    enum class Move { Up, Down, Left, Right };

    /// Both outlive the selection. The selected identifier is kept in `state`.
    KeyboardSelection(NotchState& state, const ClipboardStore& store);

    /// The first entry of the list, or else of the strip.
    void selectInitial();
    void clear();
    /// Up and down act on the list, left and right on the strip; it stops at the ends.
    void move(Move move);
    /// The history has changed: an entry that went is followed by the one that took its place.
    void reconcile();

    [[nodiscard]] std::optional<List> list() const { return m_list; }
    [[nodiscard]] std::optional<ClipboardItem> item() const;

private:
    [[nodiscard]] const QList<ClipboardItem>& itemsOf(List list) const;
    [[nodiscard]] qsizetype& lastIndexOf(List list);
    void select(List list, qsizetype index);

    NotchState& m_state;
    const ClipboardStore& m_store;
    std::optional<List> m_list;
    qsizetype m_lastTextIndex = 0;
    qsizetype m_lastImageIndex = 0;
};

} // namespace nimbarrow
