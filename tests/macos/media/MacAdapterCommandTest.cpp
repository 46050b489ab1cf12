#include "macos/media/MacAdapterCommand.h"

#include "support/Test.h"

class MacAdapterCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isThereWhenAllOfItIs()
    {
        const QTemporaryDir folder;
        const auto script = make(folder.filePath(u"adapter.pl"_s));
        const auto interpreter = make(folder.filePath(u"interpreter"_s));
        const MacAdapterCommand command(folder.path(), interpreter);
        QVERIFY(!command.find());
        const auto library = make(folder.filePath(u"libMediaRemoteAdapter.dylib"_s));
        QVERIFY2(!command.find(), "the interpreter cannot be run");
        QFile::setPermissions(interpreter, QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(command.find(), (ProgramCall { interpreter, { script, library } }));
        QFile::remove(script);
        QVERIFY(!command.find());
    }

private:
    static QString make(const QString& path)
    {
        QFile file(path);
        [[maybe_unused]] const auto made = file.open(QFile::WriteOnly);
        return path;
    }
};

QTEST_GUILESS_MAIN(MacAdapterCommandTest)
#include "MacAdapterCommandTest.moc"
