#pragma once

#include "linux/keys/InputWays.h"
#include "platform/HotKeys.h"

#include <QDBusConnection>
#include <QList>
#include <QObject>

#include <optional>

namespace nimbarrow {

class UserDefaults;

/// The hot key by whichever service of the session's message bus has such keys. It is found out in the
/// background; what was registered until then is registered there as soon as it is known.
class BusHotKeys final : public HotKeys {
public:
    /// Makes hot keys that call `bound` with whether there is one.
    using Maker = std::function<std::unique_ptr<HotKeys>(std::function<void(bool isBound)> bound)>;

    /// `defaults`, which live longer, remember what the user has answered. `description` is what the hot key
    /// is called in the system's settings. Without a bus there is none. `custom`, if there is one, makes what
    /// the desktop has for programs where the bus has nothing.
    BusHotKeys(std::optional<QDBusConnection> bus, UserDefaults& defaults, bool isKWin, QString description,
        Maker custom = {});
    ~BusHotKeys() override;

    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override;

    /// None while it is not known yet. Nothing where the user has refused it.
    [[nodiscard]] std::optional<HotKeyWay> way() const { return m_way; }

private:
    struct Wanted;
    class Registered;

    void use(HotKeyWay way);

    std::optional<QDBusConnection> m_bus;
    UserDefaults& m_defaults;
    QString m_description;
    Maker m_custom;
    BusKeyFacts m_facts;
    std::optional<HotKeyWay> m_way;
    std::unique_ptr<HotKeys> m_keys;
    QList<std::weak_ptr<Wanted>> m_wanted;
    /// Owns the questions that are on their way. Goes first, and nothing is answered any more.
    QObject m_questions;
};

} // namespace nimbarrow
