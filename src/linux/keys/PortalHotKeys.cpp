#include "linux/keys/PortalHotKeys.h"

#include "linux/session/BusCalls.h"
#include "linux/session/PortalRequest.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QLoggingCategory>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(shortcuts, "ua.tessak.Nimbarrow.hotkey")

const QString shortcutId = u"toggle-history"_s;
constexpr QStringView answerKey = u"portalHotKey";
const QString granted = u"granted"_s;
const QString refused = u"refused"_s;

/// As the portal wants it: (sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap facts;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.facts;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.facts;
    argument.endStructure();
    return argument;
}

/// In the words of the shortcuts specification of the desktops: "LOGO+SHIFT+v".
QString trigger(Key letter, KeyModifiers modifiers)
{
    QStringList parts;
    for (const auto& [modifier, name] :
        { std::pair(KeyModifier::Control, u"CTRL"_s), std::pair(KeyModifier::Option, u"ALT"_s),
            std::pair(KeyModifier::Command, u"LOGO"_s), std::pair(KeyModifier::Shift, u"SHIFT"_s) }) {
        if (modifiers.testFlag(modifier))
            parts << name;
    }
    parts << (letter == Key::C ? u"c"_s : u"v"_s);
    return parts.join(u'+');
}

} // namespace

class PortalHotKeys::Session final : public QObject, public Registration {
    Q_OBJECT

public:
    Session(QDBusConnection bus, UserDefaults& defaults, PortalShortcut shortcut,
        std::function<void()> pressed, std::function<void(bool)> bound)
        : m_bus(std::move(bus))
        , m_defaults(defaults)
        , m_shortcut(std::move(shortcut))
        , m_pressed(std::move(pressed))
        , m_bound(std::move(bound))
    {
        followBusOwner(m_bus, portalService, this, SLOT(followOwner(QString, QString, QString)));
        followPortalSignal(
            m_bus, globalShortcutsPortal, u"Activated"_s, this, SLOT(activate(QDBusObjectPath, QString)));
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [this] { m_isEnding = true; });
        if (m_defaults.string(answerKey) == refused)
            m_bound(false);
        else
            create();
    }

    ~Session() override
    {
        if (!m_isEnding)
            m_defaults.set(answerKey, QString());
        if (!m_session.isEmpty())
            m_bus.send(portalClosing(m_session, u"Session"_s));
    }
    Q_DISABLE_COPY_MOVE(Session)

private Q_SLOTS:
    void activate(const QDBusObjectPath& session, const QString& id)
    {
        if (session.path() != m_session || id != shortcutId)
            return;
        // Who is called may end this registration.
        const auto pressed = m_pressed;
        pressed();
    }

    /// The next portal knows neither the program nor its keys, and starts when it is asked.
    void followOwner(const QString& /*name*/, const QString& /*before*/, const QString& now)
    {
        // One that ends over the question itself is not asked for ever.
        if (!now.isEmpty() || !std::exchange(m_isBound, false))
            return;
        introduceToPortals(m_bus);
        create();
    }

private:
    void create()
    {
        askPortal(m_bus, globalShortcutsPortal, u"CreateSession"_s, {},
            { { u"session_handle_token"_s, portalToken() } }, this, [this](const PortalAnswer& answer) {
                m_session = answer.results.value(u"session_handle"_s).toString();
                if (answer.kind == PortalAnswer::Kind::Granted && !m_session.isEmpty())
                    bind();
                else
                    finish(false);
            });
    }

    void bind()
    {
        askPortal(m_bus, globalShortcutsPortal, u"BindShortcuts"_s,
            { QVariant::fromValue(QDBusObjectPath(m_session)),
                QVariant::fromValue(QList<PortalShortcut> { m_shortcut }), QString() },
            {}, this, [this](const PortalAnswer& answer) {
                // GNOME 48 leaves to chance which answer goes with what it has bound, and has the same one
                // for a refusal and for what has failed. Who has agreed once has not refused it now.
                const auto bound = qdbus_cast<QList<PortalShortcut>>(answer.results.value(u"shortcuts"_s));
                const auto isBound = !bound.isEmpty() || answer.kind == PortalAnswer::Kind::Granted;
                if (isBound || m_defaults.string(answerKey) != granted)
                    m_defaults.set(answerKey, isBound ? granted : refused);
                finish(isBound, answer.kind == PortalAnswer::Kind::Refused);
            });
    }

    void finish(bool isBound, bool isRefused = false)
    {
        // Who has said no knows.
        if (!isBound && !isRefused)
            qCWarning(shortcuts, "The desktop's portal gives no hot key");
        m_isBound = isBound;
        m_bound(isBound);
    }

    QDBusConnection m_bus;
    UserDefaults& m_defaults;
    PortalShortcut m_shortcut;
    std::function<void()> m_pressed;
    std::function<void(bool)> m_bound;
    QString m_session;
    bool m_isBound = false;
    bool m_isEnding = false;
};

PortalHotKeys::PortalHotKeys(
    QDBusConnection bus, UserDefaults& defaults, QString description, std::function<void(bool)> bound)
    : m_bus(std::move(bus))
    , m_defaults(defaults)
    , m_description(std::move(description))
    , m_bound(std::move(bound))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

std::unique_ptr<HotKeys::Registration> PortalHotKeys::registerKey(
    Key key, KeyModifiers modifiers, std::function<void()> pressed)
{
    return std::make_unique<Session>(m_bus, m_defaults,
        PortalShortcut { shortcutId,
            { { u"description"_s, m_description }, { u"preferred_trigger"_s, trigger(key, modifiers) } } },
        std::move(pressed), m_bound);
}

} // namespace nimbarrow

#include "PortalHotKeys.moc"
