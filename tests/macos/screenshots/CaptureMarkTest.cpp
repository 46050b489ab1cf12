#include "macos/screenshots/CaptureMark.h"

#include "support/Test.h"

namespace {

/// A property list of one object, with the table and the trailer that every such list ends with.
QByteArray listOf(char object)
{
    return QByteArray("bplist00") + object + '\x08'
        + QByteArray::fromHex("0000000000000101000000000000000100000000000000000000000000000009");
}

} // namespace

class CaptureMarkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTruthValueIsTheMark()
    {
        QCOMPARE(capturemark::valueOf(listOf('\x09')), true);
        QCOMPARE(capturemark::valueOf(listOf('\x08')), false);
        QVERIFY(listOf('\x09').size() < capturemark::longest);
    }

    void anythingElseIsNone()
    {
        QVERIFY(!capturemark::valueOf({}));
        QVERIFY(!capturemark::valueOf("bplist00"));
        QVERIFY(!capturemark::valueOf(listOf('\x10')));
        QVERIFY(!capturemark::valueOf(listOf('\x09').chopped(1)));
        QVERIFY(!capturemark::valueOf(listOf('\x09').replace("bplist", "xplist")));
    }
};

QTEST_GUILESS_MAIN(CaptureMarkTest)
#include "CaptureMarkTest.moc"
