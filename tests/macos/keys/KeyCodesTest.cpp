#include "macos/keys/KeyCodes.h"

#include "support/Test.h"

class KeyCodesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysByTheirPlace()
    {
        // A has the place 0, a tab is no key of ours, and the last one is none at all.
        const QList<std::pair<quint16, Key>> rows { { 8, Key::C }, { 9, Key::V }, { 36, Key::Return },
            { 76, Key::KeypadEnter }, { 49, Key::Space }, { 51, Key::Backspace }, { 117, Key::ForwardDelete },
            { 53, Key::Escape }, { 123, Key::Left }, { 124, Key::Right }, { 125, Key::Down },
            { 126, Key::Up }, { 0, Key::Other }, { 48, Key::Other }, { 0xFFFF, Key::Other } };
        for (const auto& [place, key] : rows) {
            QCOMPARE(keycodes::keyAt(place), key);
            QCOMPARE(keycodes::placeOf(key), key == Key::Other ? std::nullopt : std::optional(place));
            QCOMPARE(keycodes::qtKeyOf(key) == Qt::Key_unknown, key == Key::Other);
        }
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
