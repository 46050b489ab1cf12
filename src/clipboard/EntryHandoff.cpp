#include "clipboard/EntryHandoff.h"

#include "clipboard/ClipboardStore.h"
#include "clipboard/Paster.h"
#include "platform/Opener.h"

#include <QDrag>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>

namespace nimbarrow {

namespace {

/// In points.
constexpr qreal cornerRadius = 7;

// The views draw white on the surface's black, which the picture leaves behind.
QPixmap onBlack(const QImage& picture)
{
    QPixmap pixmap(picture.size());
    pixmap.setDevicePixelRatio(picture.devicePixelRatio());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF({}, pixmap.deviceIndependentSize()), cornerRadius, cornerRadius);
    painter.drawImage(QPointF(), picture);
    return pixmap;
}

} // namespace

EntryHandoff::EntryHandoff(
    const ClipboardStore& store, Paster& paster, Opener& opener, SharePicker& sharePicker, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_paster(paster)
    , m_opener(opener)
    , m_sharePicker(sharePicker)
{
}

bool EntryHandoff::paste(const QUuid& id)
{
    const auto* const item = m_store.find(id);
    return item && m_paster.paste(*item, false);
}

void EntryHandoff::open(const QUuid& id)
{
    const auto* const item = m_store.find(id);
    if (!item)
        return;
    const auto link = item->linkUrl();
    if (const auto url = link ? link : item->dragUrl())
        m_opener.open(*url);
}

void EntryHandoff::share(const QUuid& id)
{
    const auto* const item = m_store.find(id);
    if (!item)
        return;
    m_sharing.reset(new SharePresenter(m_sharePicker, m_opener, item->shareItems(), [this] {
        m_sharing.reset();
        Q_EMIT sharingChanged();
    }));
    Q_EMIT sharingChanged();
}

void EntryHandoff::drag(const QUuid& id, const QImage& picture)
{
    // A drag runs until the button is let go, and the view that began it may be gone by then: none of its
    // code may be under way.
    QMetaObject::invokeMethod(
        this, [this, id, picture] { carry(id, picture); }, Qt::QueuedConnection);
}

void EntryHandoff::carry(const QUuid& id, const QImage& picture)
{
    const auto* const item = m_store.find(id);
    auto content = item ? dragContent(*item) : nullptr;
    if (!content)
        return;
    // Deletes itself when the drag has ended.
    auto* const drag = new QDrag(this);
    drag->setMimeData(content.release());
    if (!picture.isNull()) {
        drag->setPixmap(onBlack(picture));
        const auto size = drag->pixmap().deviceIndependentSize();
        drag->setHotSpot(QPointF(size.width() / 2, size.height() / 2).toPoint());
    }
    // Never a move: the file stays the history's.
    drag->exec(Qt::CopyAction);
}

std::unique_ptr<QMimeData> EntryHandoff::dragContent(const ClipboardItem& item)
{
    auto content = std::make_unique<QMimeData>();
    const auto url = item.dragUrl();
    if (url && url->isLocalFile()) {
        const auto files = item.fileUrls();
        content->setUrls(files.isEmpty() ? QList { *url } : files);
    } else if (url) {
        content->setUrls({ *url });
        content->setText(item.text.value_or(url->toString()));
    } else if (item.text) {
        content->setText(*item.text);
    } else {
        return nullptr;
    }
    return content;
}

} // namespace nimbarrow
