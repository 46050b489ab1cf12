#include "linux/keys/GlobalAccelHotKeys.h"

#include "linux/keys/QtKeys.h"
#include "linux/session/BusCalls.h"

#include <QDBusMetaType>
#include <QLoggingCategory>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(hotKeys, "ua.tessak.Nimbarrow.hotkey")

const QString service = u"org.kde.kglobalaccel"_s;
const QString component = u"ua.tessak.Nimbarrow"_s;
const QString action = u"toggle-history"_s;

// What the keys are for: in use from now on, or what the settings offer to go back to.
constexpr uint inUse = 2;
constexpr uint byDefault = 8;

QDBusMessage question(const QString& method)
{
    return QDBusMessage::createMethodCall(service, u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, method);
}

} // namespace

class GlobalAccelHotKeys::Action final : public QObject, public Registration {
    Q_OBJECT

public:
    Action(QDBusConnection bus, const QString& description, int keys, std::function<void()> pressed)
        : m_bus(std::move(bus))
        , m_id({ component, action, u"Nimbarrow"_s, description })
        , m_pressed(std::move(pressed))
    {
        qDBusRegisterMetaType<QList<int>>();
        followBusSignal(m_bus, u"/component/"_s + QString(component).replace(u'.', u'_'),
            u"org.kde.kglobalaccel.Component"_s, u"globalShortcutPressed"_s, this,
            SLOT(followPress(QString, QString)), { component, action });
        auto introduced = question(u"doRegister"_s);
        introduced << m_id;
        m_bus.send(introduced);
        set(keys, byDefault, {});
        set(keys, inUse, [](const QDBusMessage& answer) {
            if (answer.type() == QDBusMessage::ErrorMessage)
                qCWarning(hotKeys, "The hot key is refused: %ls", qUtf16Printable(answer.errorName()));
        });
    }

    // The action stays among the shortcuts, with the keys that it may have been given.
    ~Action() override
    {
        auto ended = question(u"setInactive"_s);
        ended << m_id;
        m_bus.send(ended);
    }
    Q_DISABLE_COPY_MOVE(Action)

private Q_SLOTS:
    void followPress(const QString& /*component*/, const QString& /*action*/)
    {
        // Who is called may end this registration.
        const auto pressed = m_pressed;
        pressed();
    }

private:
    void set(int keys, uint purpose, std::function<void(const QDBusMessage&)> answered)
    {
        auto asked = question(u"setShortcut"_s);
        asked << m_id << QVariant::fromValue(QList<int> { keys }) << purpose;
        if (answered)
            callBus(m_bus, asked, this, std::move(answered));
        else
            m_bus.send(asked);
    }

    QDBusConnection m_bus;
    QStringList m_id;
    std::function<void()> m_pressed;
};

GlobalAccelHotKeys::GlobalAccelHotKeys(QDBusConnection bus, QString description)
    : m_bus(std::move(bus))
    , m_description(std::move(description))
{
}

GlobalAccelHotKeys::~GlobalAccelHotKeys() = default;

std::unique_ptr<HotKeys::Registration> GlobalAccelHotKeys::registerKey(
    Key key, KeyModifiers modifiers, std::function<void()> pressed)
{
    return std::make_unique<Action>(
        m_bus, m_description, qtKeys(key, modifiers).toCombined(), std::move(pressed));
}

} // namespace nimbarrow

#include "GlobalAccelHotKeys.moc"
