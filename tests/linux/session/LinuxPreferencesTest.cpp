#include "linux/session/LinuxPreferences.h"

#include "support/BusService.h"
#include "support/PrivateBus.h"
#include "support/Test.h"

#include <QDBusVariant>

namespace {

const QString appearance = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString kde = u"org.kde.kdeglobals.KDE"_s;

/// The settings portal of a desktop that has what is in `values`.
class SettingsPortal final : public BusService {
public:
    explicit SettingsPortal(const PrivateBus& bus, const QHash<QString, QVariant>& values = {})
        : BusService(bus.address(), u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s)
        , m_values(values)
    {
    }

    int asked = 0;

    bool handleMessage(const QDBusMessage& question, const QDBusConnection& /*connection*/) override
    {
        if (signatureOf(question) != "org.freedesktop.portal.Settings.Read ss"_L1)
            return false;
        ++asked;
        const auto value = m_values.value(
            question.arguments().at(0).toString() + u' ' + question.arguments().at(1).toString());
        if (!value.isValid())
            return m_bus.send(
                question.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such"_s));
        // Portals wrap what they read twice.
        const QDBusVariant wrapped(QVariant::fromValue(QDBusVariant(value)));
        return m_bus.send(question.createReply(QVariant::fromValue(wrapped)));
    }

    void change(const QString& space, const QString& key, const QVariant& value)
    {
        auto signal = QDBusMessage::createSignal(
            u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << space << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

private:
    QHash<QString, QVariant> m_values;
};

} // namespace

class LinuxPreferencesTest : public QObject {
    Q_OBJECT

    PrivateBus m_bus;

    QDBusConnection m_program = QDBusConnection::connectToBus(m_bus.address(), u"program"_s);

private Q_SLOTS:
    void motionIsReducedWhereTheDesktopSaysSo_data()
    {
        const Rows<QVariant, QVariant, QVariant, bool> row;
        row("nothing known", {}, {}, {}, false);
        row("reduced", QVariant(1U), {}, {}, true);
        row("new setting above the old", QVariant(0U), QVariant(false), {}, false);
        row("GNOME, off", {}, QVariant(false), {}, true);
        row("GNOME, on", {}, QVariant(true), {}, false);
        row("GNOME, nonsense", {}, QVariant(u"no"_s), {}, false);
        row("KDE, instant", {}, QVariant(true), QVariant(u"0"_s), true);
        row("KDE, fast", {}, {}, QVariant(0.5), false);
        row("KDE, nonsense", {}, {}, QVariant(u"fast"_s), false);
    }
    void motionIsReducedWhereTheDesktopSaysSo()
    {
        const auto [reducedMotion, animations, factor, reduced]
            = Rows<QVariant, QVariant, QVariant, bool>::current();
        SettingsPortal portal(m_bus,
            { { appearance + u" reduced-motion"_s, reducedMotion },
                { gnome + u" enable-animations"_s, animations },
                { kde + u" AnimationDurationFactor"_s, factor } });
        const LinuxPreferences preferences(m_program);
        QVERIFY(!preferences.reduceMotion());
        QTRY_COMPARE(portal.asked, 3);
        // The last answer is on its way; this one comes behind it.
        auto last = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
            u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s, u"Read"_s);
        (void)answerTo(last << u"any"_s << u"thing"_s, m_program);
        QCoreApplication::processEvents();
        QCOMPARE(preferences.reduceMotion(), reduced);
    }

    void changesAreFollowed()
    {
        SettingsPortal portal(m_bus);
        const LinuxPreferences preferences(m_program);
        const QSignalSpy changed(&preferences, &DesktopPreferences::reduceMotionChanged);
        QTRY_COMPARE(portal.asked, 3);

        portal.change(gnome, u"enable-animations"_s, false);
        QTRY_COMPARE(changed.size(), 1);
        QVERIFY(preferences.reduceMotion());
        portal.change(gnome, u"color-scheme"_s, u"x"_s);
        portal.change(gnome, u"enable-animations"_s, true);
        QTRY_COMPARE(changed.size(), 2);
        QVERIFY(!preferences.reduceMotion());
    }

    void withoutABusNothingIsReduced() { QVERIFY(!LinuxPreferences(std::nullopt).reduceMotion()); }

    void theLanguageComesFromTheEnvironment_data()
    {
        const Rows<QStringList, QString> row;
        row("LANG", { u"LANG=uk_UA.UTF-8"_s }, u"uk-UA"_s);
        row("LANGUAGE", { u"LANG=en_US.UTF-8"_s, u"LANGUAGE=uk:en"_s }, u"uk"_s);
        row("LC_ALL", { u"LANG=en_US.UTF-8"_s, u"LC_ALL=uk_UA.UTF-8"_s }, u"uk-UA"_s);
        row("LC_MESSAGES", { u"LANG=en_US.UTF-8"_s, u"LC_MESSAGES=uk_UA.UTF-8"_s }, u"uk-UA"_s);
        row("LC_TIME is no language", { u"LANG=en_GB.UTF-8"_s, u"LC_TIME=uk_UA.UTF-8"_s }, u"en-GB"_s);
        row("Russian in Ukraine", { u"LANG=ru_UA.UTF-8"_s }, u"ru-UA"_s);
    }
    void theLanguageComesFromTheEnvironment()
    {
        const auto [environment, first] = Rows<QStringList, QString>::current();
        // Read once at the start, so each row is a process of its own.
        QProcess process;
        auto variables = QProcess::systemEnvironment();
        erase_if(
            variables, [](const QString& v) { return v.startsWith("LANG"_L1) || v.startsWith("LC_"_L1); });
        process.setEnvironment(variables + environment);
        process.start(QCoreApplication::applicationFilePath(), { u"--languages"_s });
        QVERIFY(process.waitForFinished());
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()).section(u' ', 0, 0), first);
    }
};

int main(int count, char** values)
{
    QCoreApplication app(count, values);
    if (QCoreApplication::arguments().contains("--languages"_L1)) {
        std::fputs(qPrintable(LinuxPreferences(std::nullopt).preferredLanguages().join(u' ')), stdout);
        return 0;
    }
    LinuxPreferencesTest test;
    return QTest::qExec(&test, count, values);
}
#include "LinuxPreferencesTest.moc"
