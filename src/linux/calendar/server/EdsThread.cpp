#include "linux/calendar/server/EdsThread.h"

#include "linux/calendar/server/EdsDatabase.h"
#include "linux/calendar/server/EdsPatience.h"

#include <future>
#include <list>
#include <mutex>
#include <pthread.h>
#include <thread>

namespace nimbarrow {

namespace {

constexpr auto leavePatience = std::chrono::seconds(2);

} // namespace

/// What the thread and the object share, and what the thread keeps when it is left to itself.
struct EdsThread::Shared {
    GMainContext* const context = g_main_context_new();
    GMainLoop* const loop = g_main_loop_new(context, FALSE);

    std::mutex mutex;
    std::list<std::shared_ptr<EdsPatience>> waiting;
    bool isClosed = false;

    /// Lives on the thread alone.
    std::unique_ptr<EdsDatabase> database;

    std::promise<void> ended;
    std::thread thread;

    Shared() = default;
    ~Shared()
    {
        g_main_loop_unref(loop);
        g_main_context_unref(context);
    }
    Q_DISABLE_COPY_MOVE(Shared)

    /// Runs `task` on the thread, behind what is there already.
    void post(std::function<void()> task) const
    {
        auto* const source = g_idle_source_new();
        g_source_set_priority(source, G_PRIORITY_DEFAULT);
        g_source_set_callback(
            source,
            [](gpointer data) -> gboolean {
                (*static_cast<std::function<void()>*>(data))();
                return G_SOURCE_REMOVE;
            },
            new std::function<void()>(std::move(task)),
            [](gpointer data) { delete static_cast<std::function<void()>*>(data); });
        g_source_attach(source, context);
        g_source_unref(source);
    }
};

EdsThread::EdsThread(std::function<void()> changed)
    : m_shared(std::make_shared<Shared>())
{
    m_shared->thread = std::thread([shared = m_shared, changed = std::move(changed)] {
        pthread_setname_np(pthread_self(), "calendars");
        g_main_context_push_thread_default(shared->context);
        shared->database = std::make_unique<EdsDatabase>(changed);
        g_main_loop_run(shared->loop);
        shared->database.reset();
        // GLib frees here what belonged to the signals.
        while (g_main_context_iteration(shared->context, FALSE)) { }
        g_main_context_pop_thread_default(shared->context);
        shared->ended.set_value();
    });
}

EdsThread::~EdsThread()
{
    close();
    // Not from here: before the loop runs, quitting it would be forgotten.
    m_shared->post([loop = m_shared->loop] { g_main_loop_quit(loop); });
    auto ended = m_shared->ended.get_future();
    if (ended.wait_for(leavePatience) == std::future_status::ready)
        m_shared->thread.join();
    else
        m_shared->thread.detach();
}

bool EdsThread::run(Job job, const std::shared_ptr<EdsPatience>& patience)
{
    std::list<std::shared_ptr<EdsPatience>>::iterator entry;
    {
        const std::lock_guard lock(m_shared->mutex);
        if (m_shared->isClosed)
            return false;
        entry = m_shared->waiting.insert(m_shared->waiting.end(), patience);
    }
    // The thread's data ends with the thread, so a plain pointer will do.
    m_shared->post([shared = m_shared.get(), job = std::move(job), patience] {
        if (!patience->isGivenUp())
            job(*shared->database, *patience);
        patience->finish();
    });
    const bool finished = patience->wait();
    const std::lock_guard lock(m_shared->mutex);
    m_shared->waiting.erase(entry);
    return finished;
}

void EdsThread::close()
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->isClosed = true;
    for (const auto& patience : m_shared->waiting)
        patience->giveUp();
}

} // namespace nimbarrow
