#pragma once

#include "clipboard/ClipboardItem.h"
#include "clipboard/ClipboardListModel.h"
#include "platform/Scheduler.h"

#include <QByteArray>
#include <QList>
#include <QMultiHash>
#include <QObject>
#include <QUrl>
#include <QUuid>
#include <qqmlintegration.h>

#include <functional>
#include <memory>
#include <optional>

namespace nimbarrow {

class Clock;
class Locations;
class Settings;
class WorkQueue;
class WorkQueues;

/// The clipboard history: its entries, the image files that belong to them, and the index on disk.
class ClipboardStore final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Texts, links and files in display order.
    Q_PROPERTY(nimbarrow::ClipboardListModel* textualItems READ textualModel CONSTANT FINAL)
    /// Images in display order.
    Q_PROPERTY(nimbarrow::ClipboardListModel* imageItems READ imageModel CONSTANT FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY itemsChanged FINAL)

public:
    /// Loads what is on disk. All references outlive the store.
    ClipboardStore(const Settings& settings, const Locations& locations, const Clock& clock,
        Scheduler& scheduler, WorkQueues& queues, QObject* parent = nullptr);
    ~ClipboardStore() override;

    /// Newest capture first; pinned entries stand where their capture put them.
    [[nodiscard]] const QList<ClipboardItem>& items() const { return m_items; }
    [[nodiscard]] bool isEmpty() const { return m_items.isEmpty(); }

    /// Pinned entries first, then the newest; without images.
    [[nodiscard]] const QList<ClipboardItem>& textualItems() const { return m_textualModel.items(); }
    [[nodiscard]] const QList<ClipboardItem>& imageItems() const { return m_imageModel.items(); }
    [[nodiscard]] ClipboardListModel* textualModel() { return &m_textualModel; }
    [[nodiscard]] ClipboardListModel* imageModel() { return &m_imageModel; }

    [[nodiscard]] const ClipboardItem* find(const QUuid& id) const;
    /// Of an image entry; empty for every other.
    Q_INVOKABLE [[nodiscard]] QUrl imageUrl(const QUuid& id) const;

    void addText(const QString& text, const std::optional<QString>& sourceApp);
    void addFiles(const QList<QUrl>& urls, const std::optional<QString>& sourceApp);
    /// The entry appears once its file is on disk; without the file there is no entry.
    void addImage(const QByteArray& pngData, const std::optional<QString>& sourceApp);
    /// A file that the system's screenshot tool has written; it stays where it is.
    void addScreenshot(const QUrl& url);

    Q_INVOKABLE void togglePin(const QUuid& id);
    /// Removes the entry and the file that the store wrote for it.
    Q_INVOKABLE void remove(const QUuid& id);
    /// Removes every entry that is not pinned.
    Q_INVOKABLE void clear();

    void enforceLimit();

    /// Puts everything that is pending on the disk and waits for it, for at most 3 s. For the end of the program.
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
    /// These image files belong to no entry any more.
    void imagesDropped(const QList<QUrl>& files);

private:
    /// Which entry has some content, and when it was captured last.
    struct Capture {
        QUuid id;
        QDateTime at;
        friend bool operator==(const Capture&, const Capture&) = default;
    };

    void load();
    void tidy(bool indexIsKnown);
    void insertText(const QString& text, const QString& key, const std::optional<QString>& sourceApp);
    void storeImage(const QByteArray& pngData, const QString& key, const std::optional<QString>& sourceApp);
    [[nodiscard]] ClipboardItem makeItem(
        ClipboardItem::Kind kind, const QString& key, const std::optional<QString>& sourceApp) const;
    void remember(const ClipboardItem& item);
    [[nodiscard]] QList<ClipboardItem>::iterator findCaptured(const QString& key);
    /// True when an entry with this hash is at the top now.
    bool promoteExisting(const QString& key);
    void insert(const ClipboardItem& item);
    void promoteOrInsert(const ClipboardItem& item);
    /// Takes the oldest entries out that are above the limit.
    [[nodiscard]] QList<ClipboardItem> takeOverflow();
    /// Of entries that are no longer in the history.
    void letGo(const QList<ClipboardItem>& removed);
    /// Deletes the files that the store wrote for these entries and that no other entry has.
    void dropImages(const QList<ClipboardItem>& removed);
    /// An entry that has just come to the top, and as it was `before`, if it was there.
    void show(const ClipboardItem& item, const ClipboardItem* before);
    /// After any other change.
    void publish();
    void scheduleSave();
    void save();

    const Settings& m_settings;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    QString m_directory;
    QString m_imagesDirectory;
    QString m_indexPath;
    QList<ClipboardItem> m_items;
    QMultiHash<QString, Capture> m_capturesByHash;
    ClipboardListModel m_textualModel;
    ClipboardListModel m_imageModel;
    std::unique_ptr<WorkQueue> m_io;
    /// Set while the index on disk is behind.
    Timer m_saveTimer;
};

} // namespace nimbarrow
