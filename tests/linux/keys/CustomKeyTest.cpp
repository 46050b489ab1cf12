#include "linux/keys/CustomKey.h"

#include "support/FakeDesktop.h"
#include "support/ManualQueues.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QProcess>
#include <QProcessEnvironment>

namespace {

const QString schema = u"org.gnome.settings-daemon.plugins.media-keys"_s;
const QString places = u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/"_s;

QString settings(const QStringList& words)
{
    QProcess tool;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    tool.setProcessEnvironment(environment);
    tool.start(u"gsettings"_s, words);
    tool.waitForFinished();
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

QString keys()
{
    return settings({ u"get"_s, schema, u"custom-keybindings"_s });
}

QString ownValue(const QString& key)
{
    return settings({ u"get"_s, schema + ".custom-keybinding:"_L1 + places + "nimbarrow/"_L1, key });
}

class User final : public Questions {
public:
    Answer answer = Answer::Yes;
    int asked = 0;

    [[nodiscard]] std::unique_ptr<Standing> ask(
        const Question& /*question*/, std::function<void(Answer)> answered) override
    {
        ++asked;
        answered(answer);
        return {};
    }
};

} // namespace

/// On GNOME's settings as they are, in a file of the test's own.
class CustomKeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_disk = std::make_unique<TestFolder>();
        qputenv("GSETTINGS_BACKEND", "keyfile");
        qputenv("XDG_CONFIG_HOME", m_disk->path().toUtf8());
        QVERIFY2(keys() == "@as []"_L1, "the package gnome-settings-daemon-common");
        m_user.asked = 0;
        m_user.answer = Questions::Answer::Yes;
        m_defaults.values.clear();
        m_command = u"'/opt/it\\''s/a \"program\"' --toggle"_s;
        start();
    }

    void cleanup()
    {
        m_registration.reset();
        m_keys.reset();
    }

    void isAddedBesideTheOthersAndGoesWhenItIsSwitchedOff()
    {
        // In a session without the letters of its names.
        qputenv("LC_ALL", "C");
        const auto theirs = places + u"моя/"_s;
        settings({ u"set"_s, schema, u"custom-keybindings"_s, u"['%1']"_s.arg(theirs) });
        switchOn();
        QCOMPARE(m_user.asked, 1);
        QCOMPARE(m_bound, QList<bool> { true });
        QCOMPARE(keys(), u"['%1', '%2nimbarrow/']"_s.arg(theirs, places));
        QCOMPARE(ownValue(u"binding"_s), u"'<Shift><Super>v'"_s);
        QCOMPARE(ownValue(u"command"_s), uR"("'/opt/it\\''s/a \"program\"' --toggle")"_s);
        // Another start, after the user has chosen other keys.
        endProgram();
        settings({ u"set"_s, schema + ".custom-keybinding:"_L1 + places + "nimbarrow/"_L1, u"binding"_s,
            u"'F9'"_s });
        start();
        switchOn();
        QCOMPARE(ownValue(u"binding"_s), u"'F9'"_s);
        QCOMPARE(m_user.asked, 1);
        QCOMPARE(m_bound, QList<bool> { true });
        switchOff();
        QCOMPARE(keys(), u"['%1']"_s.arg(theirs));
        // On and off again before the settings have been read.
        m_registration = m_keys->registerKey(Key::V, KeyModifier::Command, [] {});
        switchOff();
        QCOMPARE(m_user.asked, 1);
        QCOMPARE(ownValue(u"binding"_s), u"''"_s);
        switchOn();
        QCOMPARE(m_user.asked, 2);
    }

    void isAskedForOnce_data()
    {
        const Rows<Questions::Answer, int> row;
        using enum Questions::Answer;
        row("no", No, 1);
        row("sent away", Dismissed, 1);
        row("nobody there", None, 2);
    }
    void isAskedForOnce()
    {
        const auto [answer, questions] = Rows<Questions::Answer, int>::current();
        m_user.answer = answer;
        switchOn();
        endProgram();
        start();
        switchOn();
        QCOMPARE(m_bound, QList<bool> { false });
        QCOMPARE(m_user.asked, questions);
        QCOMPARE(keys(), u"@as []"_s);
    }

    void staysAwayWhenItWasTakenAwayInTheSettings()
    {
        switchOn();
        endProgram();
        settings({ u"set"_s, schema, u"custom-keybindings"_s, u"[]"_s });
        start();
        switchOn();
        QCOMPARE(keys(), u"@as []"_s);
        QCOMPARE(m_bound, QList<bool> { false });
    }

private:
    void start()
    {
        m_bound.clear();
        m_keys = std::make_unique<CustomKey>(
            m_command, m_user, m_defaults, m_queues, [this](bool isBound) { m_bound << isBound; });
    }

    void switchOn()
    {
        m_registration = m_keys->registerKey(Key::V, KeyModifier::Command | KeyModifier::Shift, [] {});
        m_queues.runAll();
    }

    void switchOff()
    {
        m_registration.reset();
        m_queues.runAll();
    }

    void endProgram()
    {
        QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit"));
        switchOff();
        m_keys.reset();
    }

    std::unique_ptr<TestFolder> m_disk;
    ManualQueues m_queues;
    User m_user;
    FakeUserDefaults m_defaults;
    QString m_command;
    QList<bool> m_bound;
    std::unique_ptr<CustomKey> m_keys;
    std::unique_ptr<HotKeys::Registration> m_registration;
};

QTEST_GUILESS_MAIN(CustomKeyTest)

#include "CustomKeyTest.moc"
