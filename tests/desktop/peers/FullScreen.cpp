// FullScreen FILE: another program's window over the whole screen, which adds to the file what is typed into
// it and "<click>" for each click.
#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QWidget>

namespace {

class FullScreen final : public QWidget {
public:
    explicit FullScreen(const QString& file)
        : m_file(file)
    {
        setStyleSheet(QStringLiteral("background: #c8c8b4"));
    }

protected:
    void keyPressEvent(QKeyEvent* event) override { add(event->text().toUtf8()); }
    void mousePressEvent(QMouseEvent* /*event*/) override { add("<click>"); }

private:
    void add(const QByteArray& what)
    {
        if (m_file.open(QFile::Append))
            m_file.write(what);
        m_file.close();
    }

    QFile m_file;
};

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    FullScreen window(QApplication::arguments().value(1));
    window.showFullScreen();
    return QApplication::exec();
}
