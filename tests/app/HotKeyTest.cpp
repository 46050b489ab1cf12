#include "app/HotKey.h"

#include "support/FakeHotKeys.h"

#include <QTest>

using namespace nimbarrow;

class HotKeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void holdsOneRegistrationOfCommandShiftV()
    {
        FakeHotKeys system;
        {
            HotKey hotKey(system);
            QCOMPARE(system.registered, 0);
            hotKey.registerKey();
            hotKey.registerKey();
            QCOMPARE(system.registered, 1);
            QCOMPARE(system.lastKey.key, Key::V);
            QCOMPARE(system.lastKey.modifiers, KeyModifier::Command | KeyModifier::Shift);
            hotKey.unregister();
            hotKey.unregister();
            QCOMPARE(system.registered, 0);
            hotKey.registerKey();
            QCOMPARE(system.registered, 1);
            system.press(); // nobody listens yet
            auto presses = 0;
            hotKey.onPressed = [&presses] { ++presses; };
            system.press();
            QCOMPARE(presses, 1);
        }
        QCOMPARE(system.registered, 0);
    }
};

QTEST_GUILESS_MAIN(HotKeyTest)
#include "HotKeyTest.moc"
