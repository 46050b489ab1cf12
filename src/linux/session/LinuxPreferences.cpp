#include "linux/session/LinuxPreferences.h"

#include "linux/session/BusCalls.h"
#include "linux/session/PortalRequest.h"

#include <QDBusReply>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;

const QString appearance = u"org.freedesktop.appearance"_s;
const QString gnomeInterface = u"org.gnome.desktop.interface"_s;
const QString kdeGlobals = u"org.kde.kdeglobals.KDE"_s;

/// Portals wrap the value once for a change and twice for an answer.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

LinuxPreferences::LinuxPreferences(std::optional<QDBusConnection> bus)
{
    if (!bus)
        return;
    followPortalSignal(
        *bus, settingsInterface, u"SettingChanged"_s, this, SLOT(accept(QString, QString, QDBusVariant)));
    ask(*bus, appearance, u"reduced-motion"_s);
    ask(*bus, gnomeInterface, u"enable-animations"_s);
    ask(*bus, kdeGlobals, u"AnimationDurationFactor"_s);
}

void LinuxPreferences::ask(const QDBusConnection& bus, const QString& space, const QString& key)
{
    auto question = portalCall(settingsInterface, u"Read"_s);
    question << space << key;
    callBus(bus, question, this, [this, space, key](const QDBusMessage& answer) {
        const QDBusReply<QDBusVariant> value = answer;
        // An error: this desktop has no such setting.
        if (value.isValid())
            accept(space, key, value.value());
    });
}

void LinuxPreferences::accept(const QString& space, const QString& key, const QDBusVariant& wrapped)
{
    const auto value = unwrapped(wrapped.variant());
    bool isNumber = false;
    if (space == appearance && key == "reduced-motion"_L1)
        m_reducedMotion = value.toUInt() == 1;
    else if (space == gnomeInterface && key == "enable-animations"_L1)
        m_animationsOff = value.metaType() == QMetaType::fromType<bool>() && !value.toBool();
    else if (space == kdeGlobals && key == "AnimationDurationFactor"_L1)
        m_animationsInstant = value.toDouble(&isNumber) <= 0 && isNumber;
    else
        return;
    const bool reduce = m_reducedMotion.value_or(m_animationsOff || m_animationsInstant);
    if (reduce == m_reduceMotion)
        return;
    m_reduceMotion = reduce;
    Q_EMIT reduceMotionChanged();
}

QStringList LinuxPreferences::preferredLanguages() const
{
    return QLocale::system().uiLanguages();
}

} // namespace nimbarrow
