#pragma once

#include "platform/Scheduler.h"

#include <QObject>

#include <functional>

class QQuickView;

namespace nimbarrow {

class NotchState;
class ThumbnailLoader;

/// Gives back what an open surface has needed, once it has been closed for a while.
class RestingMemory final : public QObject {
    Q_OBJECT

public:
    /// `returnFreeMemory` hands the heap's free pages to the system. All references outlive the object.
    RestingMemory(const NotchState& state, QQuickView& view, ThumbnailLoader& thumbnails,
        Scheduler& scheduler, std::function<void()> returnFreeMemory, QObject* parent = nullptr);

private:
    void followMode();
    void giveBack();

    const NotchState& m_state;
    QQuickView& m_view;
    ThumbnailLoader& m_thumbnails;
    Scheduler& m_scheduler;
    std::function<void()> m_returnFreeMemory;
    Timer m_timer;
};

} // namespace nimbarrow
