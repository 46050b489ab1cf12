#include "linux/session/LinuxSessionLock.h"

#include "linux/session/BusCalls.h"

#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

const QString loginManager = u"org.freedesktop.login1"_s;
const QString loginSession = u"org.freedesktop.login1.Session"_s;
const QString properties = u"org.freedesktop.DBus.Properties"_s;
const QString lockedHint = u"LockedHint"_s;

/// Each also is the name of its interface and, with slashes, the path of its object. GNOME's serves Budgie
/// too.
QStringList screenSavers()
{
    return { u"org.freedesktop.ScreenSaver"_s, u"org.gnome.ScreenSaver"_s, u"org.cinnamon.ScreenSaver"_s,
        u"org.mate.ScreenSaver"_s, u"org.xfce.ScreenSaver"_s };
}

QDBusMessage isScreenSaverActive(const QString& name)
{
    return QDBusMessage::createMethodCall(
        name, u'/' + QString(name).replace(u'.', u'/'), name, u"GetActive"_s);
}

/// Of the session that this process belongs to, or else the one that its user sees.
QDBusMessage isLoginSessionLocked()
{
    auto question = QDBusMessage::createMethodCall(
        loginManager, u"/org/freedesktop/login1/session/auto"_s, properties, u"Get"_s);
    question << loginSession << lockedHint;
    return question;
}

bool isYes(const QDBusMessage& answer)
{
    const auto value = answer.arguments().value(0);
    const auto plain = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    return answer.type() == QDBusMessage::ReplyMessage && plain.toBool();
}

} // namespace

LinuxSessionLock::LinuxSessionLock(
    const std::optional<QDBusConnection>& session, const std::optional<QDBusConnection>& system)
{
    if (session) {
        for (const auto all = screenSavers(); const auto& name : all) {
            followBusSignal(
                *session, {}, name, u"ActiveChanged"_s, this, SLOT(followScreenSaver(bool, QDBusMessage)));
            add(*session, isScreenSaverActive(name));
        }
    }
    if (system) {
        followBusSignal(*system, {}, properties, u"PropertiesChanged"_s, this,
            SLOT(followLoginSession(QString, QVariantMap, QStringList)), { loginSession });
        add(*system, isLoginSessionLocked());
    }
}

void LinuxSessionLock::follow(const SessionLock& display)
{
    m_display = &display;
    connect(&display, &SessionLock::changed, this, &LinuxSessionLock::update);
    update();
}

void LinuxSessionLock::add(const QDBusConnection& bus, const QDBusMessage& question)
{
    const auto service = question.service();
    const auto added = m_questions.insert(service, { bus, question });
    // To look whether somebody is there must not start a screen saver that the user does not use.
    added->call.setAutoStartService(false);
    followBusOwner(bus, service, this, SLOT(followOwner(QString, QString, QString)));
    ask(service);
}

void LinuxSessionLock::ask(const QString& service)
{
    const auto question = m_questions.constFind(service);
    callBus(question->bus, question->call, this,
        [this, service](const QDBusMessage& answer) { setLocking(service, isYes(answer)); });
}

// Anybody can send a signal. That the screen is locked is believed at once, that it is not only when the
// service itself says so.
void LinuxSessionLock::followScreenSaver(bool active, const QDBusMessage& signal)
{
    if (active)
        setLocking(signal.interface(), true);
    ask(signal.interface());
}

void LinuxSessionLock::followLoginSession(
    const QString& /*interface*/, const QVariantMap& changed, const QStringList& invalidated)
{
    if (changed.contains(lockedHint) || invalidated.contains(lockedHint))
        ask(loginManager);
}

void LinuxSessionLock::followOwner(
    const QString& service, const QString& /*oldOwner*/, const QString& /*newOwner*/)
{
    ask(service);
}

void LinuxSessionLock::setLocking(const QString& service, bool isLocking)
{
    if (isLocking)
        m_locking.insert(service);
    else
        m_locking.remove(service);
    update();
}

void LinuxSessionLock::update()
{
    const auto isLocked = !m_locking.isEmpty() || (m_display && m_display->isLocked());
    if (isLocked == m_isLocked)
        return;
    m_isLocked = isLocked;
    Q_EMIT changed();
}

} // namespace nimbarrow
