#include "macos/session/BundlePlace.h"

#include "support/Test.h"

class BundlePlaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyTheFolderOfProgramsIsSafe()
    {
        for (const auto& path : { u"/Applications/Nimbarrow.app"_s, u"/Applications/Tools/Nimbarrow.app"_s })
            QVERIFY2(!bundleplace::isOutsideApplications(path), qPrintable(path));
        for (const auto& path : { u"/Applications2/Nimbarrow.app"_s, u"/Users/a/Downloads/Nimbarrow.app"_s,
                 u"/Users/a/Applications/Nimbarrow.app"_s, u"/Applications/../tmp/Nimbarrow.app"_s })
            QVERIFY2(bundleplace::isOutsideApplications(path), qPrintable(path));
    }

    void resourcesLieBesideTheProgram()
    {
        QCOMPARE(bundleplace::resources(u"/Applications/Nimbarrow.app/Contents/MacOS"_s),
            u"/Applications/Nimbarrow.app/Contents/Resources"_s);
    }
};

QTEST_GUILESS_MAIN(BundlePlaceTest)
#include "BundlePlaceTest.moc"
