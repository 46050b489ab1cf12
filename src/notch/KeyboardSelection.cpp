#include "notch/KeyboardSelection.h"

#include "clipboard/ClipboardStore.h"
#include "notch/NotchState.h"

#include <algorithm>

namespace nimbarrow {

namespace {

qsizetype indexOf(const QList<ClipboardItem>& items, const QUuid& id)
{
    const auto found = std::ranges::find(items, id, &ClipboardItem::id);
    return found == items.end() ? -1 : found - items.begin();
}

} // namespace

KeyboardSelection::KeyboardSelection(NotchState& state, const ClipboardStore& store)
    : m_state(state)
    , m_store(store)
{
}

void KeyboardSelection::selectInitial()
{
    m_lastTextIndex = 0;
    m_lastImageIndex = 0;
    if (!m_store.textualItems().isEmpty())
        select(List::Text, 0);
    else if (!m_store.imageItems().isEmpty())
        select(List::Images, 0);
    else
        clear();
}

void KeyboardSelection::clear()
{
    m_list.reset();
    m_state.setSelection({});
}

void KeyboardSelection::move(Move move)
{
    const auto target = move == Move::Up || move == Move::Down ? List::Text : List::Images;
    const auto& items = itemsOf(target);
    if (items.isEmpty())
        return;
    const auto last = items.size() - 1;
    if (m_list != target) {
        select(target, std::min(last, lastIndexOf(target)));
        return;
    }
    const auto index = std::max<qsizetype>(indexOf(items, m_state.selection()), 0);
    const auto step = move == Move::Up || move == Move::Left ? -1 : 1;
    select(target, std::clamp<qsizetype>(index + step, 0, last));
}

void KeyboardSelection::reconcile()
{
    if (!m_list)
        return;
    const auto list = *m_list;
    const auto& items = itemsOf(list);
    const auto index = indexOf(items, m_state.selection());
    if (index >= 0)
        lastIndexOf(list) = index;
    else if (items.isEmpty())
        clear();
    else
        select(list, std::min(lastIndexOf(list), items.size() - 1));
}

std::optional<ClipboardItem> KeyboardSelection::item() const
{
    const auto* item = m_list ? m_store.find(m_state.selection()) : nullptr;
    return item ? std::optional(*item) : std::nullopt;
}

const QList<ClipboardItem>& KeyboardSelection::itemsOf(List list) const
{
    return list == List::Text ? m_store.textualItems() : m_store.imageItems();
}

qsizetype& KeyboardSelection::lastIndexOf(List list)
{
    return list == List::Text ? m_lastTextIndex : m_lastImageIndex;
}

void KeyboardSelection::select(List list, qsizetype index)
{
    m_list = list;
    lastIndexOf(list) = index;
    m_state.setSelection(itemsOf(list)[index].id);
}

} // namespace nimbarrow
