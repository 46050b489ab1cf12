#include "app/HotKey.h"

#include "support/FakeHotKeys.h"

#include <QTest>

using namespace nimbarrow;

class HotKeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void holdsOneRegistrationAndOneHandler()
    {
        FakeHotKeys system;
        {
            HotKey hotKey(system);
            QCOMPARE(system.handlers + system.registered, 0);
            hotKey.registerKey();
            hotKey.registerKey();
            QCOMPARE(system.registered, 1);
            hotKey.unregister();
            hotKey.unregister();
            QCOMPARE(system.registered, 0);
            hotKey.registerKey();
            QCOMPARE(system.handlers, 1);
            QCOMPARE(system.registered, 1);
        }
        QCOMPARE(system.handlers + system.registered, 0);
    }

    void actsOnItsOwnKeyAlone()
    {
        FakeHotKeys system;
        HotKey hotKey(system);
        hotKey.registerKey();
        const auto own = system.lastId;
        QCOMPARE(own, (HotKeyId { 0x4E425257, 1 }));
        QCOMPARE(system.lastKey.key, Key::V);
        QCOMPARE(system.lastKey.modifiers, KeyModifier::Command | KeyModifier::Shift);
        system.press(own); // nobody listens yet
        int presses = 0;
        hotKey.onPressed = [&presses] { ++presses; };
        system.press({ own.signature, 2 });
        system.press({ own.signature + 1, own.number });
        QCOMPARE(presses, 0);
        system.press(own);
        QCOMPARE(presses, 1);
    }
};

QTEST_GUILESS_MAIN(HotKeyTest)
#include "HotKeyTest.moc"
