#include "PlayerGallery.h"

#include "qml/PlayerColumn.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

QString madeUpCover()
{
    QImage image(600, 600, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient night(0, 0, 600, 600);
    night.setColorAt(0, "#f6a04d");
    night.setColorAt(0.5, "#d94f70");
    night.setColorAt(1, "#5b3fa8");
    painter.fillRect(image.rect(), night);
    painter.setPen(QPen(QColor(255, 255, 255, 200), 26));
    for (const auto radius : { 60, 130, 200 })
        painter.drawEllipse(QPoint(300, 300), radius, radius);
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return QString::fromLatin1(png.toBase64());
}

class PlayerGallery {
public:
    PlayerGallery(const QDir& folder, L10n::Resolved language)
        : m_folder(folder)
        , m_language(language == L10n::Ukrainian ? u"uk"_s : u"en"_s)
    {
        L10n::setCurrent(language);
    }

    void drawAll()
    {
        shot(u"nothing"_s);
        const auto ukrainian = m_language == u"uk"_s;
        const QJsonObject song { { u"title"_s, ukrainian ? u"Щедрик"_s : u"Clocks Below"_s },
            { u"artist"_s, ukrainian ? u"Микола Леонтович"_s : u"The Paper Harbour"_s }, { u"elapsed"_s, 72 },
            { u"duration"_s, 176 } };
        m_column.play(song);
        shot(u"paused-plain"_s);
        m_column.player.say(QJsonObject {
            { u"type"_s, u"artwork"_s }, { u"id"_s, u"cover"_s }, { u"data"_s, madeUpCover() } });
        auto loud = song;
        loud.insert(u"playing"_s, true);
        loud.insert(u"artworkID"_s, u"cover"_s);
        loud.insert(u"volume"_s, 62);
        loud.insert(u"title"_s,
            ukrainian ? u"Щедрик, щедрик, щедрівочка, прилетіла ластівочка"_s
                      : u"Clocks Below the Water, Live at the Harbour"_s);
        m_column.play(loud);
        shot(u"playing"_s);
        click(L10n::Key::Volume);
        m_column.settle();
        moveTo({ 40, 98 + 31 });
        shot(u"volume"_s);
        QTest::qWait(2000);
        shot(u"moved"_s);
        moveTo({ 149, 1 });
        for (const auto volume : { 0, 20, 100 }) {
            loud.insert(u"volume"_s, volume);
            m_column.play(loud);
            shot(u"volume-%1"_s.arg(volume));
        }
        loud.insert(u"duration"_s, 0);
        loud.insert(u"artist"_s, QString());
        loud.insert(u"title"_s, u"Radio"_s);
        loud.remove(u"volume"_s);
        m_column.play(loud);
        shot(u"endless"_s);
        loud.insert(u"duration"_s, 36'000);
        loud.insert(u"elapsed"_s, 3'700);
        m_column.play(loud);
        shot(u"hours"_s);
        denied();
    }

private:
    void denied()
    {
        auto& player = m_column.player;
        player.musicApp.state = MusicApp::Running { 7, u"Music"_s, {} };
        player.scripting.error = ScriptResult::Error { true, {} };
        player.command.call.reset();
        player.say("{\"type\":\"idle\"}");
        player.adapter().end();
        player.time.advance(std::chrono::seconds(60));
        player.queues.runAll();
        m_column.settle();
        shot(u"denied"_s);
    }

    void click(L10n::Key key)
    {
        const auto place = PlayerColumn::placeIn(m_column.button(L10n::text(key)));
        QTest::mouseClick(&m_column.view, Qt::LeftButton, {}, place);
    }

    void moveTo(const QPoint& place)
    {
        QTest::mouseMove(&m_column.view, place);
        m_column.settle();
    }

    void shot(const QString& name)
    {
        const auto ratio = m_column.view.devicePixelRatio();
        m_column.view.grabWindow().save(
            m_folder.filePath(u"player-%1-%2@%3x.png"_s.arg(name, m_language).arg(ratio)));
    }

    QDir m_folder;
    QString m_language;
    PlayerColumn m_column;
};

} // namespace

void drawPlayer(const QDir& folder, L10n::Resolved language)
{
    PlayerGallery(folder, language).drawAll();
}

} // namespace nimbarrow
