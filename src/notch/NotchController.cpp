#include "notch/NotchController.h"

#include "clipboard/PasteboardCapture.h"
#include "notch/HoverTrackingView.h"
#include "notch/NotchMotion.h"
#include "platform/Pointer.h"
#include "platform/Screens.h"
#include "platform/SessionLock.h"
#include "preferences/L10n.h"
#include "preferences/Settings.h"

#include <QPointer>

#include <algorithm>

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

constexpr auto peekDuration = 2400ms;
constexpr auto collapseAfterExit = 40ms;
constexpr auto collapseAfterRelease = 150ms;
constexpr auto exitWatchPeriod = 50ms;
constexpr auto exitWatchTolerance = 20ms;
constexpr auto dragWatchPeriod = 150ms;

// How far outside the surface the pointer still counts as inside, in points.
constexpr double exitMargin = 4;

} // namespace

NotchController::NotchController(const NotchServices& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_panel(services.panelWindow)
    , m_keyboard(services, m_state, m_actions)
{
    m_actions.onHold = [this] { hold(); };
    m_actions.onRelease = [this] { release(); };
    m_actions.onCollapse = [this] { collapse(); };
    m_actions.onPreview = [this](const QUuid& item) { preview(item); };
}

void NotchController::attach(HoverTrackingView& view)
{
    const QPointer<NotchController> self(this);
    const auto forward = [self](void (NotchController::*verb)()) {
        return [self, verb] {
            if (self)
                (self->*verb)();
        };
    };
    view.onHover = forward(&NotchController::hovered);
    view.onExit = forward(&NotchController::hoverExited);
    view.onDragEntered = forward(&NotchController::dragEntered);
    view.onDragExited = forward(&NotchController::dragExited);
    view.onDrop = [self](const PasteboardContent& content) {
        if (self)
            self->dropped(content);
    };
    if (view.window())
        m_keyboard.attach(*view.window());
}

void NotchController::start()
{
    connect(&m_services.screens, &Screens::changed, this, &NotchController::relayout);
    connect(&m_services.sessionLock, &SessionLock::changed, this, &NotchController::relayout);
    connect(&m_services.settings, &Settings::showCalendarChanged, this, &NotchController::relayout);
    // Queued: a surface that folds its calendar because it collapses must not shrink its panel first.
    connect(&m_state, &NotchState::calendarExpandedChanged, this, &NotchController::resizeForCalendar,
        Qt::QueuedConnection);
    relayout();
}

void NotchController::relayout()
{
    const auto geometry = m_services.sessionLock.isLocked()
        ? std::nullopt
        : NotchGeometry::find(m_services.screens.screens());
    if (!geometry) {
        vanish();
        return;
    }
    m_state.setGeometry(geometry);
    updateExpandedSize();
    layOut(m_state.mode());
    m_panel.orderFront();
}

void NotchController::vanish()
{
    // First of all, and with the keyboard: to bring a program to the front now could put it above a locker.
    m_panel.orderOut();
    closeKeyboard(false);
    dragExited();
    setMode(NotchState::Collapsed);
    // Views that have held the surface go without a word.
    m_holdCount = 0;
    m_state.setPeek(std::nullopt);
    m_state.setGeometry(std::nullopt);
}

void NotchController::updateExpandedSize()
{
    m_state.setExpandedSize(NotchPanel::expandedSize(
        *m_state.geometry(), m_services.settings.showCalendar(), m_state.calendarExpanded()));
}

void NotchController::layOut(NotchState::Mode mode)
{
    m_restingPointer = m_services.pointer.location();
    const auto& geometry = *m_state.geometry();
    m_panel.setFrame(m_state.preview().isNull() ? NotchPanel::frameFor(mode, geometry, m_state.expandedSize())
                                                : NotchPanel::previewFrame(geometry));
}

void NotchController::resizeForCalendar()
{
    if (!m_state.geometry())
        return;
    updateExpandedSize();
    if (m_state.mode() == NotchState::Expanded)
        layOut(NotchState::Expanded);
}

void NotchController::settleLater(std::function<void()> task)
{
    m_settleTimer = m_services.scheduler.after(notchmotion::settleDelay, std::move(task));
}

void NotchController::setMode(NotchState::Mode mode)
{
    if (mode == m_state.mode() || !m_state.geometry())
        return;
    if (mode == NotchState::Expanded) {
        m_state.setShowSettings(false);
        if (onExpand)
            onExpand();
        startExitWatch();
    } else {
        m_state.setPreview({});
        m_state.setCalendarExpanded(false);
        m_exitWatch.cancel();
    }
    if (mode == NotchState::Collapsed) {
        m_restingPointer = m_services.pointer.location();
        // The panel keeps its size until the surface has shrunk inside it.
        settleLater([this] {
            if (m_state.mode() != NotchState::Collapsed || !m_state.geometry())
                return;
            layOut(NotchState::Collapsed);
            m_state.setPeek(std::nullopt);
        });
    } else {
        // The surface needs the room before it grows into it.
        m_settleTimer.cancel();
        layOut(mode);
    }
    m_state.setMode(mode);
    if (mode == NotchState::Expanded)
        m_state.setPeek(std::nullopt);
}

void NotchController::peek(const PeekContent& content)
{
    if (!m_state.geometry() || m_state.mode() != NotchState::Collapsed)
        return;
    m_state.setPeek(content);
    setMode(NotchState::Peek);
    m_peekTimer = m_services.scheduler.after(peekDuration, [this] {
        if (m_state.mode() == NotchState::Peek)
            setMode(NotchState::Collapsed);
    });
}

void NotchController::hovered()
{
    if (m_state.mode() == NotchState::Expanded) {
        hoverEntered();
        return;
    }
    if (!m_state.geometry())
        return;
    const auto pointer = m_services.pointer.location();
    // The panel of a surface that still shrinks is larger than what is left of it.
    const auto frame = NotchPanel::frameFor(m_state.mode(), *m_state.geometry(), m_state.expandedSize());
    if (pointer != m_restingPointer && frame.grown(1).contains(pointer))
        hoverEntered();
}

void NotchController::hoverEntered()
{
    m_collapseTimer.cancel();
    m_dragWatch.cancel();
    setMode(NotchState::Expanded);
}

void NotchController::hoverExited()
{
    if (m_services.pointer.location() != m_restingPointer)
        m_restingPointer.reset();
    if (m_state.mode() == NotchState::Expanded)
        scheduleCollapse(collapseAfterExit);
}

void NotchController::scheduleCollapse(Scheduler::Duration delay)
{
    m_collapseTimer = m_services.scheduler.after(delay, [this] { collapseIfIdle(); });
}

void NotchController::startExitWatch()
{
    if (!m_exitWatch.isSet())
        m_exitWatch
            = m_services.scheduler.every(exitWatchPeriod, exitWatchTolerance, [this] { collapseIfIdle(); });
}

void NotchController::collapseIfIdle()
{
    if (m_state.mode() != NotchState::Expanded || m_holdCount > 0 || !m_state.geometry())
        return;
    const auto pointer = m_services.pointer.location();
    if (m_panel.frame().grown(exitMargin).contains(pointer)
        || m_state.geometry()->notchRect.grown(exitMargin).contains(pointer))
        return;
    // A row that is being dragged out keeps the surface open until it is let go.
    if (m_services.pointer.isAnyButtonDown())
        watchDrag();
    else
        collapse();
}

void NotchController::watchDrag()
{
    if (m_dragWatch.isSet())
        return;
    m_dragWatch = m_services.scheduler.every(dragWatchPeriod, 0ms, [this] {
        if (m_services.pointer.isAnyButtonDown())
            return;
        m_dragWatch.cancel();
        collapseIfIdle();
    });
}

void NotchController::hold()
{
    ++m_holdCount;
}

void NotchController::release()
{
    m_holdCount = std::max(m_holdCount - 1, 0);
    if (m_holdCount < 1)
        scheduleCollapse(collapseAfterRelease);
}

void NotchController::collapse()
{
    if (m_keyboard.isOn())
        closeKeyboard(true);
    else
        setMode(NotchState::Collapsed);
}

void NotchController::toggleKeyboard()
{
    if (m_keyboard.isOn())
        closeKeyboard(true);
    else
        openKeyboard();
}

void NotchController::openKeyboard()
{
    if (m_keyboard.isOn() || !m_state.geometry())
        return;
    setMode(NotchState::Expanded);
    hold();
    m_keyboard.open();
}

void NotchController::closeKeyboard(bool collapsing)
{
    if (!m_keyboard.isOn())
        return;
    m_keyboard.close();
    release();
    if (collapsing)
        setMode(NotchState::Collapsed);
}

void NotchController::dragEntered()
{
    if (m_dragHeld)
        return;
    m_dragHeld = true;
    hold();
    m_state.setDropTargeted(true);
    setMode(NotchState::Expanded);
}

void NotchController::dragExited()
{
    if (!m_dragHeld)
        return;
    m_dragHeld = false;
    m_state.setDropTargeted(false);
    release();
}

void NotchController::dropped(const PasteboardContent& content)
{
    m_services.capture.capture(content, L10n::text(L10n::Key::Shelf));
    // A drop ends the drag without leaving first.
    dragExited();
}

void NotchController::preview(const QUuid& item)
{
    if (item == m_state.preview())
        return;
    m_state.setPreview(item);
    if (!m_state.geometry())
        return;
    if (!item.isNull()) {
        m_settleTimer.cancel();
        layOut(m_state.mode());
        return;
    }
    settleLater([this] {
        if (m_state.geometry())
            layOut(m_state.mode());
    });
}

} // namespace nimbarrow
