#include "linux/keys/BusHotKeys.h"

#include "linux/keys/GlobalAccelHotKeys.h"
#include "linux/keys/PortalHotKeys.h"
#include "linux/session/BusCalls.h"
#include "linux/session/PortalRequest.h"

#include <QDBusReply>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

struct BusHotKeys::Wanted {
    Key key;
    KeyModifiers modifiers;
    std::function<void()> pressed;
    std::unique_ptr<Registration> registration {};
};

/// Ends with what it stands for, whether that was registered by then or not.
class BusHotKeys::Registered final : public Registration {
public:
    explicit Registered(std::shared_ptr<Wanted> wanted)
        : m_wanted(std::move(wanted))
    {
    }

private:
    std::shared_ptr<Wanted> m_wanted;
};

BusHotKeys::BusHotKeys(std::optional<QDBusConnection> bus, UserDefaults& defaults, bool isKWin,
    QString description, Maker custom)
    : m_bus(std::move(bus))
    , m_defaults(defaults)
    , m_description(std::move(description))
    , m_custom(std::move(custom))
{
    m_facts.isKWin = isKWin;
    m_facts.hasCustomKeys = m_custom != nullptr;
    if (!m_bus) {
        use(hotKeyWay(m_facts));
        return;
    }
    const auto asked = questionToBus(u"NameHasOwner"_s) << u"org.kde.kglobalaccel"_s;
    callBus(*m_bus, asked, &m_questions, [this](const QDBusMessage& answer) {
        m_facts.hasGlobalAccel = QDBusReply<bool>(answer).value();
        askPortalVersion(*m_bus, globalShortcutsPortal, &m_questions, [this](uint version) {
            m_facts.globalShortcuts = version;
            use(hotKeyWay(m_facts));
        });
    });
}

BusHotKeys::~BusHotKeys() = default;

void BusHotKeys::use(HotKeyWay way)
{
    m_way = way;
    const auto bound = [this, way](bool isBound) { m_way = isBound ? way : HotKeyWay::Nothing; };
    switch (way) {
    case HotKeyWay::GlobalAccel: m_keys = std::make_unique<GlobalAccelHotKeys>(*m_bus, m_description); break;
    case HotKeyWay::Portal:
        m_keys = std::make_unique<PortalHotKeys>(*m_bus, m_defaults, m_description, bound);
        break;
    case HotKeyWay::Custom: m_keys = m_custom(bound); break;
    case HotKeyWay::Nothing: break;
    }
    for (const auto all = std::exchange(m_wanted, {}); const auto& weak : all) {
        if (const auto wanted = weak.lock(); wanted && m_keys)
            wanted->registration = m_keys->registerKey(wanted->key, wanted->modifiers, wanted->pressed);
    }
}

std::unique_ptr<HotKeys::Registration> BusHotKeys::registerKey(
    Key key, KeyModifiers modifiers, std::function<void()> pressed)
{
    if (m_keys)
        return m_keys->registerKey(key, modifiers, std::move(pressed));
    auto wanted = std::make_shared<Wanted>(Wanted { key, modifiers, std::move(pressed) });
    m_wanted << wanted;
    return std::make_unique<Registered>(std::move(wanted));
}

} // namespace nimbarrow
