#include "linux/keys/FakeInputKeystrokes.h"

#include "linux/applications/DesktopApplications.h"
#include "linux/display/WaylandRegistry.h"
#include "linux/keys/XkbKeymap.h"

#include <fake-input-client.h>
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client-protocol.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace nimbarrow {

namespace {

constexpr quint32 firstWithKeys = 4;
/// What a keymap's codes are above the kernel's.
constexpr unsigned codeOffset = 8;

unsigned keyTypingV(const char* description, std::size_t size)
{
    const auto context = xkb::makeContext();
    const xkb::Keymap keymap(context ? xkb_keymap_new_from_buffer(context.get(), description, size,
                                 XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS)
                                     : nullptr,
        &xkb_keymap_unref);
    const auto code = keymap ? xkb::codeTyping(keymap.get(), 0, XKB_KEY_v) : std::nullopt;
    return code ? *code - codeOffset : KEY_V;
}

} // namespace

struct FakeInputKeystrokes::Events {
    static void keymap(void* data, wl_keyboard*, uint32_t /*format*/, int file, uint32_t size)
    {
        auto& self = *static_cast<FakeInputKeystrokes*>(data);
        auto* const text = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
        ::close(file);
        self.releaseKeyboard();
        if (text == MAP_FAILED) {
            self.typePaste(KEY_V);
            return;
        }
        // The text ends with a zero byte.
        const auto key = keyTypingV(static_cast<const char*>(text), size > 0 ? size - 1 : 0);
        ::munmap(text, size);
        self.typePaste(key);
    }
};

FakeInputKeystrokes::FakeInputKeystrokes(wl_display* display, const DesktopApplications& applications)
    : m_display(display)
    , m_applications(applications)
{
    const WaylandRegistry registry(display);
    if (registry.version(org_kde_kwin_fake_input_interface.name) < firstWithKeys)
        return;
    m_seat = registry.bind<wl_seat>(wl_seat_interface, 1);
    m_input = registry.bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, firstWithKeys);
    org_kde_kwin_fake_input_authenticate(m_input, "Nimbarrow", "Paste");
}

FakeInputKeystrokes::~FakeInputKeystrokes()
{
    releaseKeyboard();
    // The request for it is newer than the keys are, and goes out whatever version the compositor has.
    if (m_input)
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(m_input));
    if (m_seat)
        wl_seat_destroy(m_seat);
}

void FakeInputKeystrokes::postPaste()
{
    static constexpr wl_keyboard_listener listener {
        &Events::keymap,
        [](void*, wl_keyboard*, uint32_t, wl_surface*, wl_array*) {},
        [](void*, wl_keyboard*, uint32_t, wl_surface*) {},
        [](void*, wl_keyboard*, uint32_t, uint32_t, uint32_t, uint32_t) {},
        [](void*, wl_keyboard*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) {},
        [](void*, wl_keyboard*, int32_t, int32_t) {},
    };
    if (!m_input || !m_seat || m_keyboard)
        return;
    // The keys are those of the user's keyboard, whose layout may have changed: a new one tells its keymap.
    m_keyboard = wl_seat_get_keyboard(m_seat);
    wl_keyboard_add_listener(m_keyboard, &listener, this);
    wl_display_flush(m_display);
}

void FakeInputKeystrokes::typePaste(unsigned key)
{
    const auto type = [this](uint32_t code, wl_keyboard_key_state state) {
        org_kde_kwin_fake_input_keyboard_key(m_input, code, state);
    };
    const auto isTerminal = m_applications.isTerminalInFront();
    type(KEY_LEFTCTRL, WL_KEYBOARD_KEY_STATE_PRESSED);
    if (isTerminal)
        type(KEY_LEFTSHIFT, WL_KEYBOARD_KEY_STATE_PRESSED);
    type(key, WL_KEYBOARD_KEY_STATE_PRESSED);
    type(key, WL_KEYBOARD_KEY_STATE_RELEASED);
    if (isTerminal)
        type(KEY_LEFTSHIFT, WL_KEYBOARD_KEY_STATE_RELEASED);
    type(KEY_LEFTCTRL, WL_KEYBOARD_KEY_STATE_RELEASED);
    wl_display_flush(m_display);
}

void FakeInputKeystrokes::releaseKeyboard()
{
    if (m_keyboard)
        wl_keyboard_destroy(m_keyboard);
    m_keyboard = nullptr;
}

} // namespace nimbarrow
