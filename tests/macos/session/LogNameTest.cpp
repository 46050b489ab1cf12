#include "macos/session/LogName.h"

#include "support/Test.h"

class LogNameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ownCategoriesStandUnderTheProgram()
    {
        const QByteArray program = "ua.tessak.Nimbarrow";
        QCOMPARE(LogName::of("ua.tessak.Nimbarrow.calendar"), (LogName { program, "calendar" }));
        QCOMPARE(LogName::of("qt.qpa.window"), (LogName { program, "qt.qpa.window" }));
        QCOMPARE(LogName::of("ua.tessak.Nimbarrow."), (LogName { program, "ua.tessak.Nimbarrow." }));
        QCOMPARE(LogName::of("ua.tessak.Nimbarrower.x"), (LogName { program, "ua.tessak.Nimbarrower.x" }));
        QCOMPARE(LogName::of(nullptr), (LogName { program, "default" }));
    }
};

QTEST_GUILESS_MAIN(LogNameTest)
#include "LogNameTest.moc"
