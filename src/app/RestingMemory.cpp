#include "app/RestingMemory.h"

#include "images/ThumbnailLoader.h"
#include "notch/NotchState.h"

#include <QPixmapCache>
#include <QQmlEngine>
#include <QQuickView>

using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

// Whoever looks again so soon finds everything as it was.
constexpr auto rest = 30s;

} // namespace

RestingMemory::RestingMemory(const NotchState& state, QQuickView& view, ThumbnailLoader& thumbnails,
    Scheduler& scheduler, std::function<void()> returnFreeMemory, QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_view(view)
    , m_thumbnails(thumbnails)
    , m_scheduler(scheduler)
    , m_returnFreeMemory(std::move(returnFreeMemory))
{
    connect(&state, &NotchState::modeChanged, this, &RestingMemory::followMode);
}

void RestingMemory::followMode()
{
    if (m_state.mode() == NotchState::Collapsed)
        m_timer = m_scheduler.after(rest, [this] { giveBack(); });
    else
        m_timer.cancel();
}

void RestingMemory::giveBack()
{
    m_thumbnails.clear();
    QPixmapCache::clear();
    m_view.releaseResources();
    m_view.engine()->collectGarbage();
    m_view.engine()->trimComponentCache();
    m_returnFreeMemory();
}

} // namespace nimbarrow
