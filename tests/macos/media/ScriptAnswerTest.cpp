#include "macos/media/ScriptAnswer.h"

#include <QTest>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

using Kind = scriptanswer::Kind;

class ScriptAnswerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void kindsByTheirCode_data()
    {
        QTest::addColumn<quint32>("type");
        QTest::addColumn<int>("kind");
        const auto row = [](const char* name, quint32 type, Kind kind) {
            QTest::newRow(name) << type << static_cast<int>(kind);
        };
        row("a list", 0x6c697374, Kind::List);
        row("a text", 0x75747874, Kind::Text);
        row("a whole number", 0x6c6f6e67, Kind::Integer);
        row("a number", 0x646f7562, Kind::Real);
        row("true", 0x74727565, Kind::Truth);
        row("missing value", 0x74797065, Kind::Nothing);
        row("data", 0x74647461, Kind::Bytes);
        row("a JPEG picture", 0x4a504547, Kind::Bytes);
    }
    void kindsByTheirCode()
    {
        QFETCH(quint32, type);
        QFETCH(int, kind);
        QCOMPARE(static_cast<int>(scriptanswer::kindOf(type)), kind);
    }

    void onlyOneNumberIsARefusal()
    {
        QVERIFY(scriptanswer::error(-1743, u"Not authorized"_s).isRefusal);
        QCOMPARE(scriptanswer::error(-1743, {}).description, u"error -1743"_s);
        QVERIFY(!scriptanswer::error(-600, u"Application isn’t running."_s).isRefusal);
        const auto unknown = scriptanswer::error({}, {});
        QVERIFY(!unknown.isRefusal);
        QVERIFY(!unknown.description.isEmpty());
    }
};

QTEST_GUILESS_MAIN(ScriptAnswerTest)
#include "ScriptAnswerTest.moc"
