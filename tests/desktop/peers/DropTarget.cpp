// DropTarget FILE: another program's window that takes drops, as a file manager or an editor does, and writes
// what came to the file: one line with the action, then each link on a line of its own, then the text.
#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

class DropTarget final : public QWidget {
public:
    explicit DropTarget(const QString& file)
        : m_file(file)
    {
        setWindowTitle(u"Drop target"_s);
        setFixedSize(200, 240);
        setAcceptDrops(true);
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }

    void dropEvent(QDropEvent* event) override
    {
        QByteArray came = event->proposedAction() == Qt::CopyAction ? "copy\n" : "another action\n";
        for (const auto& url : event->mimeData()->urls())
            came += url.toEncoded() + '\n';
        if (event->mimeData()->hasFormat(u"text/plain"_s))
            came += event->mimeData()->text().toUtf8();
        if (m_file.open(QFile::WriteOnly))
            m_file.write(came);
        m_file.close();
        event->acceptProposedAction();
    }

private:
    QFile m_file;
};

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    DropTarget target(QApplication::arguments().value(1));
    target.show();
    return QApplication::exec();
}
