#include "linux/keys/X11HotKeys.h"

#include "linux/display/X11Properties.h"
#include "linux/keys/X11Keyboard.h"

#include <QSet>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <optional>

namespace nimbarrow {
namespace {

constexpr uint16_t modifierBits = 0xff;

uint16_t maskOf(KeyModifiers modifiers)
{
    unsigned mask = 0;
    mask |= modifiers.testFlag(KeyModifier::Command) ? unsigned(XCB_MOD_MASK_4) : 0U;
    mask |= modifiers.testFlag(KeyModifier::Shift) ? unsigned(XCB_MOD_MASK_SHIFT) : 0U;
    mask |= modifiers.testFlag(KeyModifier::Option) ? unsigned(XCB_MOD_MASK_1) : 0U;
    mask |= modifiers.testFlag(KeyModifier::Control) ? unsigned(XCB_MOD_MASK_CONTROL) : 0U;
    return static_cast<uint16_t>(mask);
}

} // namespace

class X11HotKeys::Grabs {
public:
    struct Grab {
        Key key;
        uint16_t mask;
        std::function<void()> pressed;
        bool isTaken = false;
    };

    Grabs()
        : m_connection(x11::connect())
        , m_root(x11::rootWindow(m_connection.get()))
    {
        if (m_root == XCB_NONE)
            return;
        m_keyboard = X11Keyboard(m_connection.get());
        repeatWithoutReleases(m_connection.get());
        m_keyboardEvent = followKeyboard(m_connection.get());
        m_notifier.emplace(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
        QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this] { readEvents(); });
    }

    void add(const std::shared_ptr<Grab>& grab)
    {
        m_grabs << grab;
        take(*grab);
    }

    /// None when nobody has added such a grab.
    [[nodiscard]] std::optional<bool> isTaken(Key key, uint16_t mask) const
    {
        const auto grab = std::ranges::find_if(
            m_grabs, [key, mask](const auto& held) { return held->key == key && held->mask == mask; });
        return grab == m_grabs.cend() ? std::nullopt : std::optional((*grab)->isTaken);
    }

    void remove(const std::shared_ptr<Grab>& grab)
    {
        m_grabs.removeOne(grab);
        takeAll();
        readLater();
    }

private:
    void takeAll()
    {
        if (m_root == XCB_NONE)
            return;
        xcb_ungrab_key(m_connection.get(), XCB_GRAB_ANY, m_root, XCB_MOD_MASK_ANY);
        xcb_flush(m_connection.get());
        m_down.clear();
        for (const auto& grab : std::as_const(m_grabs))
            take(*grab);
    }

    void take(Grab& grab)
    {
        grab.isTaken = false;
        const auto code = m_root == XCB_NONE ? std::nullopt : m_keyboard.codeOf(grab.key);
        if (!code)
            return;
        // A lock that is on is a modifier to the server, but not to people.
        const auto numLock = m_keyboard.numLockMask();
        const std::array<unsigned, 4> locks { 0U, XCB_MOD_MASK_LOCK, numLock,
            XCB_MOD_MASK_LOCK | unsigned(numLock) };
        for (const auto lock : locks) {
            const auto cookie = xcb_grab_key_checked(m_connection.get(), 1, m_root,
                static_cast<uint16_t>(grab.mask | lock), *code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            // The error of a combination that another program holds.
            const auto error = x11::owned(xcb_request_check(m_connection.get(), cookie));
            grab.isTaken |= error != nullptr;
        }
        readLater();
    }

    // Waiting for an answer may have read events into the queue, which the socket then no longer tells of.
    void readLater()
    {
        if (m_notifier)
            QMetaObject::invokeMethod(
                &*m_notifier, [this] { readEvents(); }, Qt::QueuedConnection);
    }

    void readEvents()
    {
        QList<std::weak_ptr<Grab>> pressed;
        auto keyboardChanged = false;
        while (const auto event = x11::owned(xcb_poll_for_event(m_connection.get()))) {
            const auto type = event->response_type & 0x7f;
            const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
            if (type == XCB_KEY_PRESS && !m_down.contains(key->detail)) {
                m_down.insert(key->detail);
                addMatches(*key, pressed);
            } else if (type == XCB_KEY_RELEASE) {
                m_down.remove(key->detail);
            } else if (type == XCB_MAPPING_NOTIFY || type == m_keyboardEvent) {
                keyboardChanged = true;
            }
        }
        // A broken connection stays readable for ever.
        if (xcb_connection_has_error(m_connection.get()) != 0)
            m_notifier->setEnabled(false);
        else if (keyboardChanged)
            readKeyboard();
        // Who is called may end this registration or another one, or the program.
        for (const auto& weak : std::as_const(pressed)) {
            if (const auto grab = weak.lock())
                grab->pressed();
        }
    }

    void addMatches(const xcb_key_press_event_t& event, QList<std::weak_ptr<Grab>>& pressed) const
    {
        const auto locks = XCB_MOD_MASK_LOCK | unsigned(m_keyboard.numLockMask());
        const auto mask = event.state & modifierBits & ~locks;
        const auto key = m_keyboard.letterAt(event.detail);
        for (const auto& grab : m_grabs) {
            if (grab->key == key && grab->mask == mask)
                pressed << grab;
        }
    }

    void readKeyboard()
    {
        auto keyboard = X11Keyboard(m_connection.get());
        const auto isSame = keyboard == m_keyboard;
        m_keyboard = std::move(keyboard);
        if (!isSame)
            takeAll();
    }

    x11::Connection m_connection;
    xcb_window_t m_root;
    X11Keyboard m_keyboard;
    QList<std::shared_ptr<Grab>> m_grabs;
    QSet<xcb_keycode_t> m_down;
    std::optional<int> m_keyboardEvent;
    /// Goes before the connection that it watches.
    std::optional<QSocketNotifier> m_notifier;
};

X11HotKeys::X11HotKeys()
    : m_grabs(std::make_shared<Grabs>())
{
}

X11HotKeys::~X11HotKeys() = default;

bool X11HotKeys::isTaken(Key key, KeyModifiers modifiers)
{
    const auto mask = maskOf(modifiers);
    if (const auto known = m_grabs->isTaken(key, mask))
        return *known;
    const auto trial = registerKey(key, modifiers, [] {});
    return m_grabs->isTaken(key, mask).value_or(false);
}

std::unique_ptr<HotKeys::Registration> X11HotKeys::registerKey(
    Key key, KeyModifiers modifiers, std::function<void()> pressed)
{
    class Registered final : public Registration {
    public:
        Registered(std::shared_ptr<Grabs> grabs, Grabs::Grab grab)
            : m_grabs(std::move(grabs))
            , m_grab(std::make_shared<Grabs::Grab>(std::move(grab)))
        {
            m_grabs->add(m_grab);
        }
        ~Registered() override { m_grabs->remove(m_grab); }

    private:
        std::shared_ptr<Grabs> m_grabs;
        std::shared_ptr<Grabs::Grab> m_grab;
    };
    return std::make_unique<Registered>(m_grabs, Grabs::Grab { key, maskOf(modifiers), std::move(pressed) });
}

} // namespace nimbarrow
