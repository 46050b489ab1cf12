#include "macos/keys/KeyCodes.h"

#include <QTest>

using namespace nimbarrow;

class KeyCodesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysByTheirPlace_data()
    {
        QTest::addColumn<int>("place");
        QTest::addColumn<int>("key");
        const auto row = [](const char* name, int place, Key key) {
            QTest::newRow(name) << place << static_cast<int>(key);
        };
        row("C", 8, Key::C);
        row("V", 9, Key::V);
        row("return", 36, Key::Return);
        row("enter", 76, Key::KeypadEnter);
        row("space", 49, Key::Space);
        row("delete", 51, Key::Backspace);
        row("forward delete", 117, Key::ForwardDelete);
        row("escape", 53, Key::Escape);
        row("left", 123, Key::Left);
        row("right", 124, Key::Right);
        row("down", 125, Key::Down);
        row("up", 126, Key::Up);
        row("A, whose place is 0", 0, Key::Other);
        row("tab", 48, Key::Other);
        row("no key", 0xFFFF, Key::Other);
    }
    void keysByTheirPlace()
    {
        QFETCH(int, place);
        QFETCH(int, key);
        const auto expected = static_cast<Key>(key);
        QCOMPARE(static_cast<int>(keycodes::keyAt(static_cast<quint16>(place))), key);
        const auto back = keycodes::placeOf(expected);
        QCOMPARE(back.has_value(), expected != Key::Other);
        if (back)
            QCOMPARE(int(*back), place);
        QCOMPARE(keycodes::qtKeyOf(expected) == Qt::Key_unknown, expected == Key::Other);
    }

    void modifiersOfAHotKey()
    {
        using enum KeyModifier;
        QCOMPARE(keycodes::hotKeyModifiers(Command | Shift), 768U);
        QCOMPARE(keycodes::hotKeyModifiers(Option), 0x800U);
        QCOMPARE(keycodes::hotKeyModifiers(Control), 0x1000U);
        QCOMPARE(keycodes::hotKeyModifiers({}), 0U);
    }

    void modifiersOfAnEvent()
    {
        using enum KeyModifier;
        // Left Command with its own bit, as the keyboard sends it.
        QCOMPARE(keycodes::modifiersOf(0x100108), KeyModifiers(Command));
        QCOMPARE(keycodes::modifiersOf(0x1E0000), Command | Shift | Option | Control);
        // An arrow key is a function key of the keypad, and Caps Lock is no modifier of anything.
        QCOMPARE(keycodes::modifiersOf(0xA10100), KeyModifiers());
        QCOMPARE(keycodes::qtModifiersOf(Command | Option), Qt::ControlModifier | Qt::AltModifier);
        QCOMPARE(keycodes::qtModifiersOf(Control | Shift), Qt::MetaModifier | Qt::ShiftModifier);
    }
};

QTEST_GUILESS_MAIN(KeyCodesTest)
#include "KeyCodesTest.moc"
