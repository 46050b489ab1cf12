#include "clipboard/ClipboardMonitor.h"

#include "clipboard/PasteboardCapture.h"
#include "files/PrivateFiles.h"
#include "images/ImageCodec.h"
#include "platform/Applications.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {

namespace {

constexpr auto pollPeriod = 500ms;
constexpr auto pollTolerance = 200ms;
/// Empty for a larger image, which is offered as a file alone.
QByteArray readPng(const QString& path)
{
    auto data = privatefiles::read(path, imagecodec::maxFileSize).value_or(QByteArray());
    if (QFileInfo(path).suffix().compare("png"_L1, Qt::CaseInsensitive) == 0)
        return data;
    return imagecodec::pngData(data).value_or(QByteArray());
}

QList<PasteboardObject> objects(const ClipboardItem& item)
{
    QList<PasteboardObject> objects;
    switch (item.kind) {
    case ClipboardItem::Kind::Text:
    case ClipboardItem::Kind::Link:
        if (item.text)
            objects << PasteboardObject { .string = item.text, .url = {}, .png = {} };
        break;
    case ClipboardItem::Kind::Image:
        if (item.imagePath) {
            objects << PasteboardObject {
                .string = {},
                .url = QUrl::fromLocalFile(*item.imagePath),
                .png = [path = *item.imagePath] { return readPng(path); },
            };
        }
        break;
    case ClipboardItem::Kind::Files:
        for (const auto& url : item.fileUrls())
            objects << PasteboardObject { .string = {}, .url = url, .png = {} };
        break;
    }
    return objects;
}

} // namespace

ClipboardMonitor::ClipboardMonitor(PasteboardCapture& capture, Pasteboard& pasteboard,
    const Applications& applications, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_capture(capture)
    , m_pasteboard(pasteboard)
    , m_applications(applications)
    , m_scheduler(scheduler)
    , m_lastChangeCount(pasteboard.changeCount())
{
}

void ClipboardMonitor::start()
{
    if (m_pasteboard.announcesChanges()) {
        connect(&m_pasteboard, &Pasteboard::changed, this, &ClipboardMonitor::poll, Qt::UniqueConnection);
        // What came before anybody listened is announced no more.
        poll();
    } else if (!m_timer.isSet()) {
        m_timer = m_scheduler.every(pollPeriod, pollTolerance, [this] { poll(); });
    }
}

void ClipboardMonitor::poll()
{
    // Nothing announces that the user has thought better of it.
    m_capture.setAccess(m_pasteboard.access());
    const auto changeCount = m_pasteboard.changeCount();
    if (changeCount == m_lastChangeCount)
        return;
    m_lastChangeCount = changeCount;
    const auto front = m_applications.frontmost();
    m_capture.capture(
        m_pasteboard, front && !front->name.isEmpty() ? std::optional(front->name) : std::nullopt);
}

void ClipboardMonitor::write(const ClipboardItem& item)
{
    const auto list = objects(item);
    if (list.isEmpty())
        return;
    m_pasteboard.write(list);
    // Not a copy that anybody made.
    m_lastChangeCount = m_pasteboard.changeCount();
}

} // namespace nimbarrow
