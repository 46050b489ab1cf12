#include "app/AppDelegate.h"

#include <QGuiApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int /*argc*/, char* argv[])
{
    if (const auto obstacle = nimbarrow::preparePlatform()) {
        std::fprintf(stderr, "Nimbarrow: %s\n", qUtf8Printable(*obstacle));
        return 1;
    }
    // There are no options. Those of the toolkit would lead to displays where the program cannot work.
    int justTheName = 1;
    const QGuiApplication application(justTheName, argv);
    QGuiApplication::setApplicationName(u"Nimbarrow"_s);
    QGuiApplication::setDesktopFileName(u"ua.tessak.Nimbarrow"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    nimbarrow::AppDelegate delegate(nimbarrow::makePlatform());
    if (!delegate.applicationDidFinishLaunching())
        return 0;
    delegate.reportMissingNotch();
    const int status = QGuiApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}
