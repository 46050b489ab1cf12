#pragma once

#include "clipboard/SharePresenter.h"

#include <QImage>
#include <QObject>
#include <QUuid>
#include <qqmlintegration.h>

#include <memory>

class QMimeData;

namespace nimbarrow {

class ClipboardStore;
class Opener;
class Paster;
class SharePicker;
struct ClipboardItem;

/// Hands entries of the history to other programs: pasted by a click, opened, dragged out, shared.
class EntryHandoff final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// The question how to share an entry, while it stands; else null.
    Q_PROPERTY(nimbarrow::SharePresenter* sharing READ sharing NOTIFY sharingChanged FINAL)

public:
    /// All references outlive the handoff.
    EntryHandoff(const ClipboardStore& store, Paster& paster, Opener& opener, SharePicker& sharePicker,
        QObject* parent = nullptr);

    /// True when a paste keystroke was delivered, false when the entry is only copied or gone.
    Q_INVOKABLE bool paste(const QUuid& id);

    /// Shows a link, an image or a file in the desktop's program for it; nothing for a text.
    Q_INVOKABLE void open(const QUuid& id);

    [[nodiscard]] SharePresenter* sharing() const { return m_sharing.get(); }
    /// Asks the user how to share an entry.
    Q_INVOKABLE void share(const QUuid& id);

    /// Lets the pointer, whose button is down, carry the entry. `picture` hangs at the pointer.
    Q_INVOKABLE void drag(const QUuid& id, const QImage& picture);

    /// What a drag of an entry carries: files, a link, or a text.
    [[nodiscard]] static std::unique_ptr<QMimeData> dragContent(const ClipboardItem& item);

Q_SIGNALS:
    void sharingChanged();

private:
    struct DeleteLater {
        void operator()(SharePresenter* presenter) const { presenter->deleteLater(); }
    };

    void carry(const QUuid& id, const QImage& picture);

    const ClipboardStore& m_store;
    Paster& m_paster;
    Opener& m_opener;
    SharePicker& m_sharePicker;
    std::unique_ptr<SharePresenter, DeleteLater> m_sharing;
};

} // namespace nimbarrow
