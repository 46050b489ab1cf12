#include "linux/pasteboard/X11Pasteboard.h"

#include "linux/pasteboard/X11PasteboardOffer.h"

#include <QMetaObject>

namespace nimbarrow {

X11Pasteboard::X11Pasteboard(const QByteArray& display, const X11PasteboardLimits& limits)
    : m_content(std::make_shared<PasteboardSnapshot>())
    , m_thread(
          std::make_unique<X11PasteboardThread>(display, limits, [this](X11PasteboardThread::Change change) {
              QMetaObject::invokeMethod(
                  this, [this, change = std::move(change)] { take(change); }, Qt::QueuedConnection);
          }))
{
}

X11Pasteboard::~X11Pasteboard() = default;

void X11Pasteboard::write(const QList<PasteboardObject>& objects)
{
    X11PasteboardOffer offer(objects);
    ++m_changeCount;
    m_newest = { ++m_writes, 0 };
    m_content = std::make_shared<PasteboardSnapshot>(offer.snapshot());
    m_thread->write({ offer.content(), offer.png() });
}

void X11Pasteboard::readDrop(
    const X11PasteboardThread::Drag& drag, std::function<void(const PasteboardSnapshot&)> done)
{
    m_thread->readDrop(drag, [this, done = std::move(done)](const PasteboardSnapshot& content) {
        QMetaObject::invokeMethod(
            this, [done, content] { done(content); }, Qt::QueuedConnection);
    });
}

void X11Pasteboard::take(const X11PasteboardThread::Change& change)
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
