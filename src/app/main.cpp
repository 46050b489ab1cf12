#include "app/AppDelegate.h"

#include <QGuiApplication>

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
    delegate.reportMissingNotch();
    return QGuiApplication::exec();
}
