#include "Fuzz.h"
#include "clipboard/ClipboardIndex.h"

#include <tuple>

using namespace nimbarrow;

/// The history's index, as a disk, another program or another version may have left it.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto items = clipboardindex::decode(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    if (!items)
        return 0;
    for (const auto& item : *items) {
        fuzz::require(item.createdAt.isValid() && item.createdAt.timeSpec() == Qt::UTC, "dates are in UTC");
        fuzz::require(!item.symbol().isEmpty() && !item.kindLabel().isEmpty(), "an entry can be shown");
        fuzz::require(item.kind == ClipboardItem::Kind::Link || !item.linkUrl(), "only links lead somewhere");
        fuzz::require(!item.linkUrl() || item.linkUrl()->isValid(), "a link is valid");
        std::ignore = item.summary();
        std::ignore = item.dragUrl();
        std::ignore = item.shareItems();
    }
    // What is read is written again with the next copy: then it must not be lost, nor another.
    const auto json = clipboardindex::encode(*items);
    const auto again = clipboardindex::decode(json);
    fuzz::require(again.has_value(), "what was written can be read");
    fuzz::require(*again == *items, "what was written is what is read");
    fuzz::require(clipboardindex::encode(*again) == json, "the same history is the same file");
    return 0;
}
