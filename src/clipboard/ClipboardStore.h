#pragma once

#include "clipboard/ClipboardHistory.h"
#include "clipboard/ClipboardListModel.h"
#include "clipboard/HistoryFiles.h"
#include "platform/Clock.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QUrl>
#include <QUuid>
#include <qqmlintegration.h>

#include <functional>
#include <optional>

namespace nimbarrow {

class Locations;
class Settings;
class WorkQueues;

/// The clipboard history as the program sees it: its entries, kept on disk, and what comes into it.
class ClipboardStore final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Texts, links and files in display order.
    Q_PROPERTY(nimbarrow::ClipboardListModel* textualItems READ textualModel CONSTANT FINAL)
    /// Images in display order.
    Q_PROPERTY(nimbarrow::ClipboardListModel* imageItems READ imageModel CONSTANT FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY itemsChanged FINAL)
    /// What the user has to know of the history, in one line of the current language; usually empty.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged FINAL)
    Q_PROPERTY(bool seesCopies READ seesCopies NOTIFY noticeChanged FINAL)

public:
    /// Loads what is on disk. All references outlive the store.
    ClipboardStore(const Settings& settings, const Locations& locations, const Clock& clock,
        Scheduler& scheduler, WorkQueues& queues, QObject* parent = nullptr);
    /// Waits until everything is on disk.
    ~ClipboardStore() override;

    /// Newest capture first; pinned entries stand where their capture put them.
    [[nodiscard]] const QList<ClipboardItem>& items() const { return m_history.items(); }
    [[nodiscard]] bool isEmpty() const { return items().isEmpty(); }
    [[nodiscard]] QString notice() const;
    [[nodiscard]] bool seesCopies() const { return m_seesCopies; }
    /// False while the user lets the program read nothing that others copy.
    void setSeesCopies(bool seesCopies);

    /// Pinned entries first, then the newest; without images.
    [[nodiscard]] const QList<ClipboardItem>& textualItems() const { return m_textualModel.items(); }
    [[nodiscard]] const QList<ClipboardItem>& imageItems() const { return m_imageModel.items(); }
    [[nodiscard]] ClipboardListModel* textualModel() { return &m_textualModel; }
    [[nodiscard]] ClipboardListModel* imageModel() { return &m_imageModel; }

    [[nodiscard]] const ClipboardItem* find(const QUuid& id) const { return m_history.find(id); }
    /// Of an image entry; empty for every other.
    Q_INVOKABLE [[nodiscard]] QUrl imageUrl(const QUuid& id) const;

    void addText(const QString& text, const std::optional<QString>& sourceApp);
    /// An image file of the history's own brings its entry to the top. More than 10,000 files, or 4 MiB of
    /// paths, are not recorded.
    void addFiles(const QList<QUrl>& urls, const std::optional<QString>& sourceApp);
    /// The entry appears once its file is on disk; without the file there is no entry.
    void addImage(const QByteArray& pngData, const std::optional<QString>& sourceApp);
    /// A file that the system's screenshot tool has written; it stays where it is. The same picture copied by
    /// that tool, seconds before or after, is one entry with it.
    void addScreenshot(const QUrl& url);

    /// Nothing where there is no room for one more pinned entry.
    Q_INVOKABLE void togglePin(const QUuid& id);
    /// Removes the entry and the file that the store wrote for it, on disk as well at once.
    Q_INVOKABLE void remove(const QUuid& id);
    /// Removes every entry that is not pinned, on disk as well at once.
    Q_INVOKABLE void clear();

    void enforceLimit();

    /// Saves all that is pending, also what is still on its way into the history, and waits for it a few
    /// seconds at most. Blocks: for the end of the program alone.
    void flush();

    /// Called for every entry that was not there before, after `items` has it.
    std::function<void(const ClipboardItem&)> onNewItem;

    /// Whether a text without white space at its ends counts as a link.
    [[nodiscard]] static bool isLink(const QString& text);
    /// SHA-256 in lower-case hexadecimal digits.
    [[nodiscard]] static QString hash(const QByteArray& data);
    /// Whether a file of this name counts as an image, by its extension.
    [[nodiscard]] static bool isImageFile(const QString& path);

Q_SIGNALS:
    void itemsChanged();
    void noticeChanged();
    /// These image files belong to no entry any more.
    void imagesDropped(const QList<QUrl>& files);

private:
    /// An image that has just been copied or saved.
    struct RecentImage {
        QUuid id;
        Clock::Instant at;
    };
    struct ImageFile {
        QUuid id;
        QString path;
    };

    void insertText(const QString& text, const QString& key, const std::optional<QString>& sourceApp);
    void storeImage(const QByteArray& pngData, const QString& key, const std::optional<QString>& sourceApp);
    void insertScreenshot(const ClipboardItem& item);
    /// Puts the screenshot into the place of the entry that is the same picture.
    void becomeScreenshot(const ClipboardItem& copied, ClipboardItem screenshot);
    void noteRecentImage(const ClipboardItem& item);
    /// Screenshots, or images that are none, of the last seconds.
    [[nodiscard]] QList<ImageFile> recentImages(bool screenshots) const;
    [[nodiscard]] ClipboardItem makeItem(
        ClipboardItem::Kind kind, const QString& key, const std::optional<QString>& sourceApp) const;
    /// True when an entry with this hash, or this identifier, is at the top now.
    template <typename Key>
    bool promote(const Key& key);
    void insert(const ClipboardItem& item);
    void promoteOrInsert(const ClipboardItem& item);
    /// Of entries that are no longer in the history: their files go with the next save.
    void dropImages(const QList<ClipboardItem>& removed);
    void finishRemoval(const QList<ClipboardItem>& removed);
    /// An entry that has just come to the top, and as it was `before`, if it was there.
    void show(const ClipboardItem& item, const ClipboardItem* before);
    /// After any other change.
    void publish();

    const Settings& m_settings;
    const Clock& m_clock;
    ClipboardHistory m_history;
    ClipboardListModel m_textualModel;
    ClipboardListModel m_imageModel;
    QList<RecentImage> m_recentImages;
    /// How many images are copied and not yet in the history.
    int m_imagesUnderWay = 0;
    bool m_seesCopies = true;
    HistoryFiles m_files;
};

} // namespace nimbarrow
