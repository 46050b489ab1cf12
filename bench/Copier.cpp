// A program that stays, so that no process start is measured. Copies what each line of its standard input
// says: "text WORDS" or "png PATH".
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QSocketNotifier>

#include <iostream>
#include <string>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void copy(const QString& line)
{
    const auto what = line.section(u' ', 1);
    if (line.startsWith("text "_L1)) {
        QGuiApplication::clipboard()->setText(what);
        return;
    }
    QFile file(what);
    if (!file.open(QFile::ReadOnly))
        qFatal("cannot read %s", qPrintable(what));
    auto* const data = new QMimeData;
    data->setData(u"image/png"_s, file.readAll());
    QGuiApplication::clipboard()->setMimeData(data);
}

} // namespace

int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [] {
        std::string line;
        if (std::getline(std::cin, line))
            copy(QString::fromStdString(line));
        else
            QGuiApplication::quit();
    });
    return QGuiApplication::exec();
}
