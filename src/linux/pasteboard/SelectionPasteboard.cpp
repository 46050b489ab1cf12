#include "linux/pasteboard/SelectionPasteboard.h"

#include "linux/pasteboard/PasteboardOffer.h"

#include <QMetaObject>

namespace nimbarrow {

SelectionPasteboard::SelectionPasteboard()
    : m_content(std::make_shared<PasteboardSnapshot>())
{
}

SelectionPasteboard::~SelectionPasteboard() = default;

Selection::Report SelectionPasteboard::report()
{
    return
        [this](Selection::Change change) { runOnMain([this, change = std::move(change)] { take(change); }); };
}

void SelectionPasteboard::start(std::unique_ptr<Selection> selection)
{
    m_thread = std::make_unique<PasteboardThread>(std::move(selection));
}

void SelectionPasteboard::write(const QList<PasteboardObject>& objects)
{
    PasteboardOffer offer(objects);
    ++m_changeCount;
    m_newest = { ++m_writes, 0 };
    m_content = std::make_shared<PasteboardSnapshot>(offer.snapshot());
    m_thread->write({ offer.content(), offer.png() });
}

void SelectionPasteboard::readOnThread(const std::function<void(ReadDone)>& read, ReadDone done)
{
    const ReadDone report = [this, done = std::move(done)](const PasteboardSnapshot& content) {
        runOnMain([done, content] { done(content); });
    };
    if (!m_thread->post([read, report] { read(report); }))
        report({});
}

void SelectionPasteboard::runOnMain(std::function<void()> work)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_posted.push_back(std::move(work));
    }
    const auto run = [this] {
        std::function<void()> first;
        {
            const std::scoped_lock lock(m_mutex);
            first = std::move(m_posted.front());
            m_posted.pop_front();
        }
        first();
    };
    QMetaObject::invokeMethod(this, run, Qt::QueuedConnection);
}

void SelectionPasteboard::take(const Selection::Change& change)
{
    const Age age { change.writesBefore, change.sequence };
    const bool late = age < m_newest;
    const auto& content = change.content;
    if (late && (!change.owned || !content.hasContent()))
        return;
    const auto standing = m_content;
    const auto shown = std::make_shared<PasteboardSnapshot>(content);
    m_content = shown;
    ++m_changeCount;
    if (!late)
        m_newest = age;
    if (change.owned)
        Q_EMIT changed();
    // It was copied, so it is announced, but it is not what is on the pasteboard any more.
    if (late && m_content == shown)
        m_content = standing;
}

} // namespace nimbarrow
