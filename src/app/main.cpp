#include "app/AppDelegate.h"

#include <QGuiApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char* argv[])
{
    nimbarrow::preparePlatform();
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(u"Nimbarrow"_s);
    QGuiApplication::setDesktopFileName(u"ua.tessak.Nimbarrow"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    nimbarrow::AppDelegate delegate(nimbarrow::makePlatform());
    if (!delegate.applicationDidFinishLaunching())
        return 0;
    if (!delegate.hasNotch()) {
        // Somebody who starts the program by hand would otherwise wonder where it is.
        std::fputs("Nimbarrow: no display has a notch, so the panel stays hidden. The README tells how to declare "
                   "one.\n",
            stderr);
    }
    return QGuiApplication::exec();
}
