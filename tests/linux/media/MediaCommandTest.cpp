#include "linux/media/MediaCommand.h"

#include "linux/media/CommandLines.h"

#include <QTest>

using namespace nimbarrow;

class MediaCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsCommands()
    {
        using Verb = MediaCommand::Verb;
        const auto is = [](QByteArrayView line, Verb verb, double value = 0) {
            return parseMediaCommand(line) == MediaCommand { verb, value };
        };
        QVERIFY(is("toggle", Verb::Toggle));
        QVERIFY(is("next\r", Verb::Next));
        QVERIFY(is("previous", Verb::Previous));
        QVERIFY(is("seek 42.0", Verb::Seek, 42));
        QVERIFY(is("seek 1e-05", Verb::Seek, 1e-5));
        QVERIFY(is("seek -3", Verb::Seek, 0));
        QVERIFY(is("volume 30", Verb::Volume, 30));
        QVERIFY(is("volume 150", Verb::Volume, 100));
        for (const auto* const line : { "", "toggl", "toggle now", "seek", "seek ", "seek nan", "seek inf",
                 "seek 1e400", "seek 4 2", "volume", "volume loud", "Next" })
            QVERIFY2(!parseMediaCommand(line), line);
    }

    void cutsLinesAndDropsThoseTooLongForACommand()
    {
        CommandLines lines;
        QCOMPARE(lines.take("ne"), QList<QByteArray>());
        QCOMPARE(lines.take("xt\ntoggle\n\npre"), QList<QByteArray>({ "next", "toggle", "" }));
        QCOMPARE(lines.take("vious\n"), QList<QByteArray>({ "previous" }));
        QCOMPARE(lines.take(QByteArray(CommandLines::longest, 'x') + '\n').size(), 1);
        for (int i = 0; i < 10; ++i)
            QCOMPARE(lines.take(QByteArray(CommandLines::longest - 1, 'x')), QList<QByteArray>());
        QCOMPARE(lines.take("next\nnext\n"), QList<QByteArray>({ "next" }));
    }
};

QTEST_GUILESS_MAIN(MediaCommandTest)
#include "MediaCommandTest.moc"
