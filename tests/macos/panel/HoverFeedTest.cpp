#include "macos/panel/HoverFeed.h"

#include "support/Test.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace {

/// Writes down what it is told of the pointer.
class HoverItem final : public QQuickItem {
public:
    explicit HoverItem(QQuickItem* parent)
        : QQuickItem(parent)
    {
        setAcceptHoverEvents(true);
        setSize(parent->size());
    }

    QStringList log;
    QPointF place;

protected:
    void hoverEnterEvent(QHoverEvent* /*event*/) override { log << u"in"_s; }
    void hoverMoveEvent(QHoverEvent* event) override { place = event->position(); }
    void hoverLeaveEvent(QHoverEvent* /*event*/) override { log << u"out"_s; }
};

} // namespace

class HoverFeedTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QQuickWindow>();
        m_window->setGeometry(0, 0, 200, 100);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        m_window->contentItem()->setSize({ 200, 100 });
        m_item = new HoverItem(m_window->contentItem());
        m_feed = std::make_unique<HoverFeed>(*m_window);
    }
    void cleanup()
    {
        m_feed.reset();
        m_window.reset();
    }

    void tellsWhileTheProgramIsInTheBackground()
    {
        m_feed->pointerAt({ 20, 30 }, false);
        m_feed->pointerAt({ 40, 50 }, false);
        QCOMPARE(m_item->log, QStringList { u"in"_s });
        QCOMPARE(m_item->place, QPointF(40, 50));
        m_feed->pointerGone(false);
        m_feed->pointerGone(false);
        QCOMPARE(m_item->log, (QStringList { u"in"_s, u"out"_s }));
        m_feed->pointerAt({ 20, 30 }, false);
        QCOMPARE(m_item->log.size(), 3);
    }

    void isSilentWhileQtTellsItself()
    {
        m_feed->pointerAt({ 20, 30 }, true);
        m_feed->pointerGone(true);
        QVERIFY(m_item->log.isEmpty());
    }

    // The program was the active one when the pointer came, and is not when it goes.
    void endsWhatQtHasBegun()
    {
        m_feed->pointerAt({ 20, 30 }, false);
        m_feed->pointerAt({ 21, 30 }, true);
        m_feed->pointerGone(false);
        QCOMPARE(m_item->log, (QStringList { u"in"_s, u"out"_s }));
    }

    void endsAtTheOutline()
    {
        QPainterPath outline;
        outline.addRect(50, 0, 100, 60);
        m_feed->setOutline(outline);
        m_feed->pointerAt({ 20, 30 }, false);
        QVERIFY(m_item->log.isEmpty());
        m_feed->pointerAt({ 60, 30 }, false);
        m_feed->pointerAt({ 60, 61 }, false);
        QCOMPARE(m_item->log, (QStringList { u"in"_s, u"out"_s }));
    }

private:
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<HoverFeed> m_feed;
    HoverItem* m_item = nullptr;
};

QTEST_MAIN(HoverFeedTest)
#include "HoverFeedTest.moc"
