// Copies every line of its standard input: a program that stays, so that no process start is measured.
#include <QClipboard>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QString>

#include <iostream>
#include <string>
#include <unistd.h>

int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [] {
        std::string line;
        if (std::getline(std::cin, line))
            QGuiApplication::clipboard()->setText(QString::fromStdString(line));
        else
            QGuiApplication::quit();
    });
    return QGuiApplication::exec();
}
