// DragSource TEXT FILE: another program's window with a text (upper half) and a file (lower half) to drag
// out.
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

class DragSource final : public QWidget {
public:
    DragSource(QString text, QString file)
        : m_text(std::move(text))
        , m_file(std::move(file))
    {
        setWindowTitle(u"Drag source"_s);
        setFixedSize(200, 240);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        painter.drawText(QRect(0, 0, 200, 120), Qt::AlignCenter, m_text);
        painter.drawText(QRect(0, 120, 200, 120), Qt::AlignCenter, m_file.section(u'/', -1));
        painter.drawLine(0, 120, 200, 120);
    }

    void mousePressEvent(QMouseEvent* event) override { m_dragsText = event->position().y() < 120; }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!event->buttons().testFlag(Qt::LeftButton))
            return;
        auto* data = new QMimeData;
        if (m_dragsText)
            data->setText(m_text);
        else
            data->setUrls({ QUrl::fromLocalFile(m_file) });
        auto* drag = new QDrag(this);
        drag->setMimeData(data);
        drag->exec(Qt::CopyAction);
    }

private:
    QString m_text;
    QString m_file;
    bool m_dragsText = false;
};

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    const auto arguments = QApplication::arguments();
    DragSource source(arguments.value(1), arguments.value(2));
    source.show();
    return QApplication::exec();
}
