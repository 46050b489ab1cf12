// gallery FOLDER: draws every state of the surface, with made-up contents, into pictures for people to look
// at.
#include "preferences/L10n.h"
#include "qml/SurfaceFixture.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QQuickPaintedItem>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

namespace {

constexpr QSize desktopSize { 800, 500 };

QImage madeUpPicture(QColor top, QColor bottom)
{
    QImage image(640, 400, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, 400);
    sky.setColorAt(0, top);
    sky.setColorAt(1, bottom);
    painter.fillRect(image.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(bottom.darker(170));
    painter.drawPolygon(QPolygon { { 0, 400 }, { 190, 180 }, { 330, 330 }, { 450, 220 }, { 640, 400 } });
    painter.setBrush(QColor(255, 244, 214));
    painter.drawEllipse(QPoint(480, 110), 46, 46);
    return image;
}

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
    QBuffer png;
    png.open(QBuffer::WriteOnly);
    image.save(&png, "PNG");
    return QString::fromLatin1(png.data().toBase64());
}

QImage madeUpDesktop()
{
    QImage image(desktopSize * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    QPainter painter(&image);
    QLinearGradient dusk(0, 0, 0, desktopSize.height());
    dusk.setColorAt(0, "#31547a");
    dusk.setColorAt(1, "#b98b6d");
    painter.fillRect(QRect({}, desktopSize), dusk);
    painter.fillRect(QRect(0, 0, desktopSize.width(), 32), QColor(255, 255, 255, 40));
    return image;
}

/// The desktop behind the window, in the window: what a grab of it returns is opaque.
class Backdrop final : public QQuickPaintedItem {
public:
    Backdrop(QQuickItem* parent, const QImage& desktop)
        : m_desktop(desktop)
    {
        setParentItem(parent);
        setZ(-1);
        const auto follow = [this, parent] { setX((parent->width() - desktopSize.width()) / 2); };
        connect(parent, &QQuickItem::widthChanged, this, follow);
        follow();
        setSize(desktopSize);
    }

    void paint(QPainter* painter) override { painter->drawImage(boundingRect(), m_desktop); }

private:
    QImage m_desktop;
};

class Gallery {
public:
    Gallery(const QDir& folder, L10n::Resolved language)
        : m_folder(folder)
        , m_language(language == L10n::Ukrainian ? u"uk"_s : u"en"_s)
    {
        L10n::setCurrent(language);
    }

    void drawAll()
    {
        shot(u"collapsed"_s);

        m_surface.state.setPeek(PeekContent::make(u"text.alignleft"_s, words(0)));
        m_surface.show(NotchState::Peek);
        shot(u"peek-text"_s);
        m_surface.state.setPeek(
            PeekContent::make(u"cup.and.saucer"_s, L10n::text(L10n::Key::SleepAllowedAgain)));
        shot(u"peek-notice"_s);
        m_surface.state.setPeek(PeekContent::make(u"doc.on.doc"_s, L10n::text(L10n::Key::PressPaste)));
        shot(u"peek-paste"_s);

        m_surface.show(NotchState::Collapsed);
        m_surface.show(NotchState::Expanded);
        shot(u"empty"_s);
        player();
        owl();
        m_surface.state.setDropTargeted(true);
        shot(u"drop"_s);
        m_surface.state.setDropTargeted(false);

        m_surface.store().setSeesCopies(false);
        shot(u"refused-empty"_s);
        fillTexts();
        shot(u"refused"_s);
        m_surface.store().setSeesCopies(true);
        shot(u"texts"_s);
        hover(2, u"hovered"_s);
        copied();
        fillImages();
        shot(u"full"_s);
        thumbs();
        select();
        scrolled();
        preview();
        day();
        settings();
        share();
        denied();

        m_surface.show(NotchState::Collapsed);
        m_surface.state.setPeek(PeekContent::forItem(m_surface.store().imageItems().first()));
        m_surface.show(NotchState::Peek);
        shot(u"peek-image"_s);
    }

private:
    [[nodiscard]] QString words(int index) const
    {
        static const QStringList english { u"Ship the panel on Friday, not on Monday"_s,
            u"Lunch at one, the usual place"_s, u"git rebase --interactive origin/main"_s,
            u"The invoice number is 2024-118"_s, u"Meet me under the clock at the station, platform four"_s };
        static const QStringList ukrainian { u"Зустріч переносимо на п’ятницю, решта без змін"_s,
            u"Щедрик, щедрик, щедрівочка"_s, u"git rebase --interactive origin/main"_s,
            u"Рахунок № 2024-118 чекає на підпис"_s, u"Їжак під ґанком, а Єва в садку"_s };
        return (m_language == u"uk"_s ? ukrainian : english).at(index);
    }

    void player()
    {
        const auto ukrainian = m_language == u"uk"_s;
        QJsonObject song { { u"title"_s, ukrainian ? u"Щедрик"_s : u"Clocks Below"_s },
            { u"artist"_s, ukrainian ? u"Микола Леонтович"_s : u"The Paper Harbour"_s }, { u"elapsed"_s, 72 },
            { u"duration"_s, 176 } };
        const auto play = [&](const QJsonObject& changes, const QString& name) {
            for (auto change = changes.begin(); change != changes.end(); ++change)
                song.insert(change.key(), change.value());
            m_surface.play(song);
            shot(u"player-"_s + name);
        };
        play({}, u"paused-plain"_s);
        m_surface.player.say(QJsonObject {
            { u"type"_s, u"artwork"_s }, { u"id"_s, u"cover"_s }, { u"data"_s, madeUpCover() } });
        play({ { u"playing"_s, true }, { u"artworkID"_s, u"cover"_s }, { u"volume"_s, 62 },
                 { u"title"_s,
                     ukrainian ? u"Щедрик, щедрик, щедрівочка, прилетіла ластівочка"_s
                               : u"Clocks Below the Water, Live at the Harbour"_s } },
            u"playing"_s);
        m_surface.click(m_surface.button(L10n::text(L10n::Key::Volume)));
        m_surface.settle();
        m_surface.moveTo(m_surface.middle(m_surface.find("VolumeSlider")));
        shot(u"player-volume"_s);
        QTest::qWait(2000);
        shot(u"player-moved"_s);
        m_surface.moveTo({ 5, 5 });
        for (const auto volume : { 0, 20, 100 })
            play({ { u"volume"_s, volume } }, u"volume-%1"_s.arg(volume));
        song.remove(u"volume"_s);
        play({ { u"duration"_s, 0 }, { u"artist"_s, QString() }, { u"title"_s, u"Radio"_s } }, u"endless"_s);
        play({ { u"duration"_s, 36'000 }, { u"elapsed"_s, 3'700 } }, u"hours"_s);
    }

    void denied()
    {
        auto& player = m_surface.player;
        player.musicApp.state = MusicApp::Running { 7, u"Music"_s, {} };
        player.scripting.error = ScriptResult::Error { true, {} };
        player.command.call.reset();
        player.say("{\"type\":\"idle\"}");
        player.adapter().end();
        player.time.advance(std::chrono::seconds(60));
        player.queues.runAll();
        shot(u"player-denied"_s);
    }

    void owl()
    {
        m_surface.moveTo(m_surface.middle(m_surface.find("OwlButton")));
        QTest::qWait(700);
        shot(u"owl-help"_s);
        m_surface.click(m_surface.find("OwlButton"));
        m_surface.settle();
        const auto* const choice = m_surface.find("Choice", 1);
        m_surface.moveTo(m_surface.middle(choice));
        shot(u"owl-picker"_s);
        m_surface.click(choice);
        m_surface.history.time.advance(std::chrono::seconds(61));
        m_surface.moveTo({ 5, 5 });
        shot(u"owl-awake"_s);
        m_surface.moveTo(m_surface.middle(m_surface.find("OwlButton")));
        QTest::qWait(700);
        shot(u"owl-awake-help"_s);
        m_surface.moveTo({ 5, 5 });
        m_surface.keepAwake.deactivate();
        m_surface.history.time.advance(std::chrono::seconds(2));
    }

    void fillTexts()
    {
        const QDir disk(m_surface.history.disk.path());
        const auto file = [&disk](const QString& name) { return QUrl::fromLocalFile(disk.filePath(name)); };
        for (const auto index : { 4, 3, 2, 1 })
            m_surface.addText(words(index));
        m_surface.store().addFiles({ file(u"Звіт за листопад.odt"_s) }, {});
        m_surface.store().addFiles({ file(u"one.odt"_s), file(u"two.odt"_s), file(u"three.odt"_s) }, {});
        m_surface.addText(
            u"https://example.org/a/rather/long/path/that/does/not/fit/in/one/row/of/the/list"_s);
        m_surface.addText(words(0));
        for (const auto& item : m_surface.store().textualItems()) {
            if (item.kind == ClipboardItem::Kind::Link)
                return m_surface.store().togglePin(item.id);
        }
    }

    void fillImages()
    {
        const QList<std::pair<QColor, QColor>> skies { { "#f6a04d", "#5b3fa8" }, { "#e7c27d", "#c2574f" },
            { "#456b4b", "#bfd3a0" }, { "#ffffff", "#e6e6ee" }, { "#2c2f3a", "#6c6f7c" },
            { "#d94f70", "#f0c3a0" }, { "#17364e", "#4a89a5" }, { "#3f7fbf", "#a5d8e6" } };
        for (const auto& [top, bottom] : skies)
            m_surface.addImage(madeUpPicture(top, bottom));
        m_surface.store().togglePin(m_surface.store().imageItems().first().id);
    }

    void hover(int row, const QString& name)
    {
        auto* const item = m_surface.find("ClipboardRow", row);
        m_surface.moveTo(m_surface.middle(item));
        shot(name);
        m_surface.moveTo(m_surface.middle(m_surface.button(item, L10n::text(L10n::Key::Delete))));
        QTest::qWait(700);
        shot(name + u"-help"_s);
    }

    void copied()
    {
        m_surface.click(m_surface.middle(m_surface.find("ClipboardRow", 1)));
        QTest::qWait(150);
        shot(u"copied"_s, false);
        m_surface.moveTo({ 5, 5 });
        QTest::qWait(900);
    }

    void thumbs()
    {
        m_surface.moveTo(m_surface.middle(m_surface.find("ClipboardThumb", 4)));
        shot(u"thumb-hovered"_s);
        m_surface.click(m_surface.middle(m_surface.find("ClipboardThumb", 2)) - QPoint(0, 18));
        QTest::qWait(150);
        shot(u"thumb-copied"_s, false);
        m_surface.moveTo({ 5, 5 });
        QTest::qWait(900);
    }

    void select()
    {
        m_surface.state.setKeyboardMode(true);
        m_surface.state.setSelection(m_surface.store().textualItems().at(1).id);
        shot(u"selected-row"_s);
        m_surface.state.setSelection(m_surface.store().imageItems().at(1).id);
        shot(u"selected-image"_s);
    }

    void scrolled()
    {
        m_surface.state.setSelection(m_surface.store().imageItems().last().id);
        m_surface.settle();
        m_surface.state.setSelection(m_surface.store().textualItems().at(5).id);
        shot(u"scrolled"_s);
        m_surface.state.setKeyboardMode(false);
        m_surface.state.setSelection({});
    }

    void share()
    {
        m_surface.handoff.share(m_surface.store().imageItems().first().id);
        shot(u"share"_s);
        m_surface.handoff.sharing()->cancel();
    }

    void day()
    {
        auto& surface = m_surface;
        auto& time = surface.history.time;
        const auto start = time.wallTime().toLocalTime().date().startOfDay();
        time.advance(std::chrono::seconds(time.wallTime().secsTo(start.addSecs(11 * 3600 + 2800))));
        surface.calendarStore.status = CalendarStore::Authorization::NotDetermined;
        surface.calendar.start();
        unfold(u"day-ask"_s);
        surface.calendarStore.status = CalendarStore::Authorization::Denied;
        surface.calendar.refresh();
        unfold(u"day-denied"_s);
        surface.calendarStore.status = CalendarStore::Authorization::FullAccess;
        surface.calendar.refresh();
        unfold(u"day-free"_s);

        const auto add
            = [&](const QString& title, int from, int minutes, const QColor& color, bool meeting = false) {
                  auto event = FakeCalendarStore::event(
                      title, start.addSecs(from * 60), start.addSecs((from + minutes) * 60));
                  event.color = color;
                  event.location = meeting ? u"https://zoom.us/j/1"_s : u"Львів, пл. Ринок 1"_s;
                  *surface.calendarStore.held << event;
              };
        add(words(0), 9 * 60 + 10, 90, "#0a84ff");
        add(u"1:1 Оленка"_s, 10 * 60 + 20, 60, "#ff9f0a", true);
        add(words(1), 12 * 60 + 20, 120, "#30d158", true);
        add(u"Call"_s, 13 * 60 + 25, 60, "#bf5af2");
        add(u"Standup"_s, 13 * 60 + 30, 15, "#000060");
        add(u"Stand-up"_s, 11 * 60 + 30, 25, "#64d2ff", true);
        add(u"Train to Lviv"_s, 15 * 60 + 5, 300, "#ff375f");
        surface.calendar.refresh();
        surface.settle();
        shot(u"day-folded"_s);
        unfold(u"day"_s, false);
        surface.moveTo(surface.middle(surface.find("EventBlock", 2)));
        shot(u"day-event"_s);
        for (int chip = 0; chip < 5; ++chip) {
            auto holiday = FakeCalendarStore::event(words(chip), start, start.addDays(1));
            holiday.isAllDay = true;
            holiday.color = QColor(chip % 2 == 0 ? "#64d2ff" : "#ff9f0a");
            *surface.calendarStore.held << holiday;
        }
        surface.calendar.refresh();
        shot(u"day-with-chips"_s);
        surface.moveTo({ 5, 5 });
        fold();
        shot(u"day-folded-with-chips"_s);
    }

    void unfold(const QString& name, bool folds = true)
    {
        m_surface.state.setCalendarExpanded(true);
        m_surface.state.setExpandedSize({ 460, 322 });
        m_surface.view.resize(460, 322);
        shot(name);
        if (folds)
            fold();
    }

    void fold()
    {
        m_surface.state.setCalendarExpanded(false);
        m_surface.state.setExpandedSize({ 460, 258 });
        m_surface.settle();
        m_surface.view.resize(460, 258);
    }

    void settings()
    {
        m_surface.state.setShowSettings(true);
        shot(u"settings"_s);
        m_surface.history.trust.trusted = false;
        m_surface.history.settings.setPasteOnClick(true);
        m_surface.history.settings.applyPasteOnClick();
        shot(u"settings-notes"_s);
        m_surface.history.loginItem.outsideApplications = true;
        m_surface.history.loginItem.error
            = u"/home/olena/.config/autostart/ua.tessak.Nimbarrow.desktop: Permission denied"_s;
        m_surface.history.settings.setLaunchAtLogin(true);
        m_surface.history.settings.applyLaunchAtLogin();
        m_surface.state.setExpandedSize({ 460, 240 });
        m_surface.view.resize(460, 240);
        m_surface.wheel({ 230, 150 }, -120);
        shot(u"settings-failure"_s);
        m_surface.wheel({ 230, 150 }, -2400);
        shot(u"settings-end"_s);
        // Every line at once, as in a session that lets no program type or have a key.
        m_surface.capabilities.set(Capabilities::Part::Paste, [] {
            return Capability { Capability::State::NotHere,
                u"Programs may not type here: press Control-V after the click."_s,
                u"Програмам тут не дозволено друкувати: після кліку натисни Control-V."_s };
        });
        m_surface.capabilities.set(Capabilities::Part::HotKey, [] {
            return Capability {
                Capability::State::NotHere,
                u"No program gets a hot key here. Give the desktop a key of its own: bindsym Mod4+Shift+v exec nimbarrow --toggle"_s,
                u"Програми тут не мають гарячих клавіш. Признач клавіші системи: bindsym Mod4+Shift+v exec nimbarrow --toggle"_s
            };
        });
        m_surface.about.refresh();
        m_surface.state.setExpandedSize({ 460, 480 });
        m_surface.view.resize(460, 480);
        shot(u"settings-whole"_s);
        m_surface.state.setExpandedSize({ 460, 258 });
        m_surface.view.resize(460, 258);
        m_surface.state.setShowSettings(false);
    }

    void preview()
    {
        m_surface.view.resize(m_surface.state.previewSize().toSize());
        m_surface.state.setPreview(m_surface.store().imageItems().first().id);
        shot(u"preview"_s);
        m_surface.state.setPreview({});
        m_surface.settle();
        m_surface.view.resize(m_surface.state.expandedSize().toSize());
    }

    void shot(const QString& name, bool settles = true)
    {
        if (settles)
            m_surface.settle();
        const auto ratio = m_surface.view.devicePixelRatio();
        auto window = m_surface.view.grabWindow();
        window.setDevicePixelRatio(ratio);
        auto desktop = m_desktop.scaled(desktopSize * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        desktop.setDevicePixelRatio(ratio);
        QPainter painter(&desktop);
        painter.drawImage(QPointF((desktopSize.width() - window.width() / ratio) / 2, 0), window);
        painter.end();
        desktop.save(m_folder.filePath(u"%1-%2@%3x.png"_s.arg(name, m_language).arg(ratio)));
    }

    QDir m_folder;
    QString m_language;
    QImage m_desktop = madeUpDesktop();
    SurfaceFixture m_surface;
    Backdrop m_backdrop { m_surface.view.contentItem(), m_desktop };
};

} // namespace

int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    L10n::setSystemWords(
        { u"Super+Shift+V"_s, u"Control-V"_s, u"/usr"_s, u"Settings"_s, u"Параметри"_s, u"computer"_s });
    QGuiApplication::setApplicationName(u"Nimbarrow"_s);
    QCommandLineParser arguments;
    arguments.addPositionalArgument(u"folder"_s, u"Where the pictures go."_s);
    arguments.process(application);
    if (arguments.positionalArguments().size() != 1)
        arguments.showHelp(1);
    QDir folder(arguments.positionalArguments().constFirst());
    if (!folder.mkpath(u"."_s))
        return 1;
    for (const auto language : { L10n::English, L10n::Ukrainian })
        Gallery(folder, language).drawAll();
    return 0;
}
