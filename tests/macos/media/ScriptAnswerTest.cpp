#include "macos/media/ScriptAnswer.h"

#include "support/Test.h"

#include <QtEndian>

using Kind = scriptanswer::Kind;

class ScriptAnswerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void kindsByTheirCode()
    {
        const QList<std::pair<QByteArray, Kind>> rows { { "list", Kind::List }, { "utxt", Kind::Text },
            { "long", Kind::Integer }, { "doub", Kind::Real }, { "true", Kind::Truth },
            { "type", Kind::Nothing }, { "tdta", Kind::Bytes }, { "JPEG", Kind::Bytes } };
        for (const auto& [code, kind] : rows)
            QVERIFY2(
                scriptanswer::kindOf(qFromBigEndian<quint32>(code.constData())) == kind, code.constData());
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
