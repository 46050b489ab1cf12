#include "app/AppDelegate.h"
#include "app/CommandLine.h"

#include <QGuiApplication>

#include <utility>

using namespace Qt::StringLiterals;

int main(int count, char* values[])
{
    const nimbarrow::CommandLine commandLine(count, values);
    if (const auto status = commandLine.answer(*nimbarrow::makeInstance()))
        return *status;
    if (const auto obstacle = nimbarrow::preparePlatform())
        return commandLine.answerObstacle(*obstacle);
    // The toolkit's own options would lead to displays where the program cannot work.
    int justTheName = 1;
    const QGuiApplication application(justTheName, values);
    QGuiApplication::setApplicationName(u"Nimbarrow"_s);
    QGuiApplication::setDesktopFileName(u"ua.tessak.Nimbarrow"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    auto platform = nimbarrow::makePlatform();
    if (const auto status = commandLine.answerHere(platform))
        return *status;
    nimbarrow::AppDelegate delegate(std::move(platform));
    if (!delegate.applicationDidFinishLaunching(commandLine.isForKeyboard()))
        return 0;
    const int status = QGuiApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}
