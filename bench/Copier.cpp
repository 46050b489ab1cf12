// A program that stays, so that no process start is measured. Copies what each line of its standard input
// says: "text WORDS" or "png PATH".
#include "linux/pasteboard/WaylandPasteboard.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QSocketNotifier>

#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return file.readAll();
}

void copy(const QString& line)
{
    const auto what = line.section(u' ', 1);
    auto* const data = new QMimeData;
    if (line.startsWith("text "_L1))
        data->setText(what);
    else
        data->setData(u"image/png"_s, contentOf(what));
    QGuiApplication::clipboard()->setMimeData(data);
}

/// A compositor lets only the program in front copy by the means that all have.
void copy(const QString& line, nimbarrow::Pasteboard& pasteboard)
{
    const auto what = line.section(u' ', 1);
    nimbarrow::PasteboardObject object;
    if (line.startsWith("text "_L1))
        object.string = what;
    else
        object.png = [what] { return contentOf(what); };
    pasteboard.write({ object });
}

} // namespace

int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    std::unique_ptr<nimbarrow::WaylandPasteboard> pasteboard;
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        pasteboard = std::make_unique<nimbarrow::WaylandPasteboard>();
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&pasteboard] {
        std::string line;
        if (!std::getline(std::cin, line))
            QGuiApplication::quit();
        else if (pasteboard)
            copy(QString::fromStdString(line), *pasteboard);
        else
            copy(QString::fromStdString(line));
    });
    return QGuiApplication::exec();
}
