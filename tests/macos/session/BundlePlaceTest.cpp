#include "macos/session/BundlePlace.h"

#include <QTest>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

class BundlePlaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyTheFolderOfProgramsIsSafe_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isOutside");
        QTest::newRow("in it") << u"/Applications/Nimbarrow.app"_s << false;
        QTest::newRow("in a folder inside") << u"/Applications/Tools/Nimbarrow.app"_s << false;
        QTest::newRow("in a sibling") << u"/Applications2/Nimbarrow.app"_s << true;
        QTest::newRow("just downloaded") << u"/Users/a/Downloads/Nimbarrow.app"_s << true;
        QTest::newRow("in the user's own") << u"/Users/a/Applications/Nimbarrow.app"_s << true;
        QTest::newRow("out of it again") << u"/Applications/../tmp/Nimbarrow.app"_s << true;
    }
    void onlyTheFolderOfProgramsIsSafe()
    {
        QFETCH(QString, path);
        QFETCH(bool, isOutside);
        QCOMPARE(bundleplace::isOutsideApplications(path), isOutside);
    }

    void resourcesLieBesideTheProgram()
    {
        QCOMPARE(bundleplace::resources(u"/Applications/Nimbarrow.app/Contents/MacOS"_s),
            u"/Applications/Nimbarrow.app/Contents/Resources"_s);
    }
};

QTEST_GUILESS_MAIN(BundlePlaceTest)
#include "BundlePlaceTest.moc"
