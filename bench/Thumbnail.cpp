// Thumbnail PICTURE RESULT: makes the small picture as the program does, and writes it as a PNG.
#include "images/ImageCodec.h"

#include <QCoreApplication>
#include <QFile>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const auto files = QCoreApplication::arguments();
    QFile picture(files.value(1));
    if (!picture.open(QFile::ReadOnly))
        return 1;
    return nimbarrow::imagecodec::thumbnail(picture, 200).save(files.value(2), "png") ? 0 : 1;
}
