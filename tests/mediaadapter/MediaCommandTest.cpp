#include "mediaadapter/MediaCommand.h"

#include "mediaadapter/CommandLines.h"

#include <QTest>

#include <cstdint>
#include <random>

using namespace nimbarrow;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

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

    void takesAnyBytes()
    {
        std::mt19937 random(7); // NOLINT: the same bytes each time
        const QByteArray alphabet("seekvolumtgnx 0123456789.-e\n\n\0\xff", 31);
        for (int i = 0; i < 500; ++i) {
            QByteArray bytes(static_cast<qsizetype>(random() % 4000), '\n');
            for (auto& byte : bytes)
                byte = alphabet.at(static_cast<qsizetype>(random() % 31));
            const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
            QCOMPARE(LLVMFuzzerTestOneInput(data, static_cast<std::size_t>(bytes.size())), 0);
        }
    }
};

QTEST_GUILESS_MAIN(MediaCommandTest)
#include "MediaCommandTest.moc"
