#pragma once

#include <cstdlib>
#include <memory>
#include <optional>
#include <xkbcommon/xkbcommon.h>

/// Keyboards as libxkbcommon describes them.
namespace nimbarrow::xkb {

using Context = std::unique_ptr<xkb_context, decltype(&xkb_context_unref)>;
using Keymap = std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)>;

[[nodiscard]] inline Context makeContext()
{
    return { xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref };
}

/// Whether a key types exactly this without a modifier.
[[nodiscard]] inline bool types(
    xkb_keymap* keymap, xkb_keycode_t code, xkb_layout_index_t layout, xkb_keysym_t wanted)
{
    const xkb_keysym_t* symbols = nullptr;
    const auto count = xkb_keymap_key_get_syms_by_level(keymap, code, layout, 0, &symbols);
    return count == 1 && symbols[0] == wanted;
}

/// The key that types this in a layout. Of the first 256 codes, for the core protocol of X11 knows no others.
[[nodiscard]] inline std::optional<xkb_keycode_t> codeIn(
    xkb_keymap* keymap, xkb_layout_index_t layout, xkb_keysym_t wanted)
{
    for (auto code = xkb_keymap_min_keycode(keymap); code <= 255 && code <= xkb_keymap_max_keycode(keymap);
         ++code) {
        if (types(keymap, code, layout, wanted))
            return code;
    }
    return {};
}

/// The key that types this in that layout, else in any layout.
[[nodiscard]] inline std::optional<xkb_keycode_t> codeTyping(
    xkb_keymap* keymap, xkb_layout_index_t preferred, xkb_keysym_t wanted)
{
    auto code = codeIn(keymap, preferred, wanted);
    for (xkb_layout_index_t layout = 0; !code && layout < xkb_keymap_num_layouts(keymap); ++layout)
        code = codeIn(keymap, layout, wanted);
    return code;
}

} // namespace nimbarrow::xkb
