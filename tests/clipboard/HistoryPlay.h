#pragma once

#include "clipboard/ClipboardIndex.h"
#include "clipboard/HistoryModel.h"
#include "clipboard/SeenRows.h"
#include "files/PrivateFiles.h"
#include "support/FileCalls.h"
#include "support/HistoryFixture.h"
#include "support/Test.h"

#include <QRandomGenerator>
#include <QStringList>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

namespace nimbarrow {

/// Plays operations to a history and to its model, on a disk that fails when it is told to.
class HistoryPlay {
public:
    /// Any number means something at any moment, so any part of a sequence can be played.
    struct Step {
        qsizetype operation;
        int number;
    };
    struct Disk {
        /// Looks before every call that changes files what the next start would find after a kill.
        bool kills = false;
        /// The calls that fail, counted from 1.
        int firstFailure = 0;
        int failures = 0;
        int error = 0;
    };

    [[nodiscard]] static QList<Step> steps(quint32 seed, int count)
    {
        QRandomGenerator random(seed);
        QList<qsizetype> choice;
        for (qsizetype operation = 0; operation < operations().size(); ++operation)
            choice += QList<qsizetype>(operations().at(operation).weight, operation);
        QList<Step> steps;
        while (steps.size() < count) {
            const auto operation = choice.at(random.bounded(static_cast<int>(choice.size())));
            steps << Step { operation, random.bounded(10'000) };
        }
        return steps;
    }

    [[nodiscard]] static QString describe(const QList<Step>& steps)
    {
        QStringList words;
        for (const auto& step : steps)
            words << u"%1 %2"_s.arg(QLatin1StringView(operations().at(step.operation).name)).arg(step.number);
        return words.join(u", "_s);
    }

    explicit HistoryPlay(const Disk& disk)
        : m_disk(disk)
    {
        m_fixture.store.reset();
        QDir(folder()).removeRecursively();
        for (auto number = 0; number < 4; ++number)
            require(QFile(foreignFile(number)).open(QFile::WriteOnly), u"no disk"_s);
        m_fileCalls.emplace(folder(), [this](const char* name) { return onCall(name); });
        m_fixture.settings.setHistoryLimit(m_model.limit);
        start();
    }

    /// What was wrong first; empty when nothing was. To be called once.
    [[nodiscard]] QString play(const QList<Step>& steps)
    {
        const auto isGood = [this](const QString& what) {
            check();
            if (!m_complaint.isEmpty())
                m_complaint += u", after: "_s + what;
            return m_complaint.isEmpty();
        };
        for (const auto& step : steps) {
            operations().at(step.operation).perform(*this, step.number);
            if (!isGood(describe({ step })))
                return m_complaint;
        }
        // Whatever has failed meanwhile is tried again.
        for (auto round = 0; round < 2; ++round) {
            settle();
            if (!isGood(u"the last change"_s))
                break;
            restart();
            if (!isGood(u"the last start"_s))
                break;
        }
        return m_complaint;
    }

    /// The names of the calls that changed files, in their order.
    [[nodiscard]] const QStringList& calls() const { return m_calls; }

private:
    static constexpr auto saveDelay = 500ms;
    static constexpr auto retryDelay = 10s;
    using perms = std::filesystem::perms;

    struct Operation {
        const char* name;
        /// How often it comes, among all others.
        int weight;
        void (*perform)(HistoryPlay& play, int number);
    };

    [[nodiscard]] static std::filesystem::path native(const QString& path) { return path.toStdString(); }

    [[nodiscard]] static QString hashOfFile(const QString& path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? HistoryModel::hash(file.readAll()) : QString();
    }

    [[nodiscard]] static QSet<QString> toSet(const QStringList& list) { return { list.begin(), list.end() }; }

    /// What is in the history only after an answer.
    struct Pending {
        enum class Next { Saved, Insert, Write, InsertWritten };

        ClipboardItem item;
        Next next;
        bool isWritten = false;
    };
    /// The folder as a kill before a call would have left it.
    struct Crash {
        QString folder;
        QString call;
    };

    [[nodiscard]] static const QList<Operation>& operations()
    {
        static const QList<Operation> operations {
            { "text", 14,
                [](auto& play, int number) { play.addText(u"text %1"_s.arg(number % 25), number); } },
            { "link", 4,
                [](auto& play, int number) {
                    play.addText(u"https://example.org/%1"_s.arg(number % 9), number);
                } },
            { "white space", 1, [](auto& play, int) { play.store().addText(u" \t\n"_s, {}); } },
            { "huge text", 1,
                [](auto& play, int number) {
                    const QString text(300'000, QChar(u'a' + number % 3));
                    play.store().addText(text, {});
                    play.m_pending << Pending { HistoryModel::text(text), Pending::Next::Insert };
                } },
            { "files", 6,
                [](auto& play, int number) {
                    const QStringList paths { play.foreignFile(number), play.foreignFile(number / 6) };
                    play.addFiles(paths.first(number % 3 == 0 ? 2 : 1), number);
                } },
            { "image", 12,
                [](auto& play, int number) {
                    const auto data = "\x89PNG " + QByteArray::number(number % 12).repeated(500);
                    play.store().addImage(data, {});
                    play.m_pending << Pending { HistoryModel::image(data), Pending::Next::Write };
                    play.m_imageHashes << *play.m_pending.last().item.contentHash;
                } },
            { "image of an entry", 3,
                [](auto& play, int number) {
                    const auto own = play.ownFiles(play.m_model.items);
                    if (own.isEmpty())
                        return;
                    const auto& file = own.at(number % own.size());
                    if (number % 3 == 0) {
                        play.addFiles({ file, play.foreignFile(number) }, number);
                        return;
                    }
                    play.store().addFiles({ QUrl::fromLocalFile(file) }, {});
                    auto& model = play.m_model;
                    const auto entry = std::ranges::find(model.items, file, &ClipboardItem::imagePath);
                    if (entry != model.items.end())
                        model.promote(entry - model.items.begin(), play.m_fixture.time.wallTime());
                } },
            { "screenshot", 4,
                [](auto& play, int number) {
                    // What was copied just before may be the same picture; another test looks at that.
                    play.settle();
                    play.wait(11s);
                    play.store().addScreenshot(QUrl::fromLocalFile(play.foreignFile(number)));
                    play.addToModel(HistoryModel::screenshot(play.foreignFile(number)), 0);
                } },
            { "pin", 5,
                [](auto& play, int number) {
                    if (play.m_model.items.isEmpty())
                        return;
                    const auto row = number % play.m_model.items.size();
                    play.store().togglePin(play.m_model.items.at(row).id);
                    play.m_model.togglePin(row);
                } },
            { "remove", 6,
                [](auto& play, int number) {
                    if (play.m_model.items.isEmpty())
                        return;
                    const auto row = number % play.m_model.items.size();
                    play.store().remove(play.m_model.items.at(row).id);
                    play.m_model.remove(row);
                    play.removed();
                } },
            { "clear", 1,
                [](auto& play, int) {
                    play.store().clear();
                    play.m_model.clear();
                    play.removed();
                } },
            { "limit", 2,
                [](auto& play, int number) {
                    play.m_fixture.settings.setHistoryLimit(5 + number % 10);
                    play.m_model.limit = std::max(10, 5 + number % 10);
                    // Nobody has to say so: the next entry makes it count.
                    if (number % 3 == 0)
                        return;
                    play.store().enforceLimit();
                    play.m_model.enforceLimit();
                    play.removed();
                } },
            { "wait", 12,
                [](auto& play, int number) {
                    play.wait(number % 3 == 0 ? 20ms : number % 3 == 1 ? saveDelay - 1ms : saveDelay);
                } },
            { "clock back", 1,
                [](auto& play, int number) {
                    play.m_fixture.time.setWallTime(play.m_fixture.time.wallTime().addSecs(-(number % 100)));
                } },
            { "foreign file comes or goes", 2,
                [](auto& play, int number) {
                    QFile file(play.foreignFile(number));
                    play.require(
                        file.remove() || file.open(QFile::WriteOnly), u"a foreign file is no file"_s);
                } },
            { "work", 20, [](auto& play, int) { play.runWork(); } },
            { "answer", 16, [](auto& play, int) { play.takeAnswer(); } },
            { "settle", 2, [](auto& play, int) { play.settle(); } },
            { "flush", 2, [](auto& play, int) { play.flush(); } },
            { "restart", 2, [](auto& play, int) { play.restart(); } },
        };
        return operations;
    }

    int onCall(const char* name)
    {
        if (m_ignoresCalls)
            return 0;
        m_calls << QString::fromLatin1(name);
        const auto number = static_cast<int>(m_calls.size());
        if (m_disk.kills && QFileInfo::exists(folder())) {
            const auto copy = u"%1/crash-%2"_s.arg(m_fixture.locations.folder).arg(number);
            std::filesystem::copy(native(folder()), native(copy), std::filesystem::copy_options::recursive);
            m_crashes << Crash { copy, m_calls.last() };
        }
        if (number < m_disk.firstFailure || number >= m_disk.firstFailure + m_disk.failures)
            return 0;
        m_failedSinceSave = true;
        m_failedSinceStart = true;
        return m_disk.error;
    }

    void start()
    {
        m_fixture.store = m_fixture.start();
        m_seenTexts.emplace(*store().textualModel());
        m_seenImages.emplace(*store().imageModel());
        store().onNewItem = [this](const ClipboardItem& item) {
            ++m_inserted;
            require(item == store().items().first(), u"a new entry is not on top"_s);
        };
    }

    void addText(const QString& text, int number)
    {
        const QString padded = QString(number % 3, u' ') + text + QString(number % 2, u'\n');
        store().addText(padded, QString::number(number % 4));
        addToModel(HistoryModel::text(padded), number);
    }

    void addFiles(const QStringList& paths, int number)
    {
        QList<QUrl> urls;
        for (const auto& path : paths)
            urls << QUrl::fromLocalFile(path);
        store().addFiles(urls, QString::number(number % 4));
        addToModel(HistoryModel::files(paths), number);
    }

    void addToModel(ClipboardItem item, int number)
    {
        item.createdAt = m_fixture.time.wallTime();
        if (!item.isScreenshot)
            item.sourceApp = QString::number(number % 4);
        m_model.add(item);
    }

    void wait(std::chrono::milliseconds time)
    {
        if (m_due && *m_due <= m_fixture.time.now() + time)
            expectSave();
        m_fixture.time.advance(time);
    }

    void runWork()
    {
        const auto filesBefore = imageFiles().size();
        const auto answersBefore = m_fixture.queues.answersWaiting();
        m_fixture.queues.work();
        if (m_fixture.queues.answersWaiting() == answersBefore)
            return;
        auto& pending = m_pending[answersBefore];
        pending.isWritten = imageFiles().size() > filesBefore;
        require(pending.next != Pending::Next::InsertWritten || pending.isWritten || m_failedSinceStart,
            u"an image was not written"_s);
    }

    void takeAnswer()
    {
        if (m_fixture.queues.answer())
            answered(m_pending.takeFirst());
    }

    /// Does in the model what the answer to a piece of work does.
    void answered(Pending pending)
    {
        if (pending.next == Pending::Next::Saved) {
            m_isSaving = false;
            if (m_savesAgain)
                expectSave();
            else if (!m_due && m_failedSinceSave && m_fixture.time.pending() > 0)
                m_due = m_fixture.time.now() + retryDelay;
            return;
        }
        pending.item.createdAt = m_fixture.time.wallTime();
        if (pending.next == Pending::Next::Insert
            || (pending.next == Pending::Next::InsertWritten && pending.isWritten))
            m_model.add(pending.item);
        else if (pending.next == Pending::Next::Write
            && !m_model.promote(*pending.item.contentHash, pending.item.createdAt))
            m_pending << Pending { pending.item, Pending::Next::InsertWritten };
    }

    void settle()
    {
        do {
            wait(saveDelay);
            while (m_fixture.queues.waiting() + m_fixture.queues.answersWaiting() > 0) {
                runWork();
                takeAnswer();
                check();
            }
        } while (m_due);
        compareSettled();
    }

    void flush()
    {
        // Where calls fail nobody knows what comes of each piece of work.
        if (m_disk.failures > 0) {
            settle();
            return;
        }
        while (m_isSaving) {
            runWork();
            takeAnswer();
            check();
        }
        if (m_due)
            expectSave();
        store().flush();
        // What was under way has brought its entries, and they are saved as well.
        while (!m_pending.isEmpty()) {
            m_pending.first().isWritten = true;
            answered(m_pending.takeFirst());
            noteChange();
            if (m_pending.isEmpty() && m_due) {
                nameNewEntries();
                expectSave();
            }
        }
        check();
        compareSettled();
    }

    void restart()
    {
        // What still waits is saved at the end.
        if (m_due || m_savesAgain) {
            m_isSaving = false;
            expectSave();
        }
        m_isSaving = m_savesAgain = false;
        m_fixture.store.reset();
        startAfterCrashes();
        while (m_fixture.queues.answer()) { }
        m_pending.clear();
        m_failedSinceStart = false;
        openToEverybody();
        start();
        require(m_failedSinceSave || store().items() == HistoryModel::loaded(m_saves.last()),
            u"the last save did not come back"_s);
        recognise(store().items());
        // What failed to be saved at the end has gone with the program.
        const auto index = readIndex().value_or(QList<ClipboardItem>());
        m_saves.removeIf([&index](const auto& save) { return HistoryModel::inWholeSeconds(save) != index; });
        require(!m_saves.isEmpty(), u"an index that nobody saved"_s);
        if (m_saves.isEmpty())
            m_saves << index;
        m_model.items = store().items();
    }

    /// As a backup or another program may have left it.
    void openToEverybody()
    {
        m_ignoresCalls = true;
        // There is no folder where making it has failed.
        std::error_code ignored;
        std::filesystem::permissions(native(folder()), perms::all, ignored);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(native(folder()), ignored))
            std::filesystem::permissions(entry, perms::all, ignored);
        m_ignoresCalls = false;
    }

    /// What is to be on the disk next: at once, or when the save that runs is over.
    void expectSave()
    {
        m_due.reset();
        m_savesAgain = m_isSaving;
        if (m_isSaving)
            return;
        m_isSaving = true;
        m_saves << m_model.items;
        m_pending << Pending { {}, Pending::Next::Saved };
        m_failedSinceSave = false;
    }

    void removed()
    {
        if (std::exchange(m_model.isChanged, false))
            expectSave();
    }

    void noteChange()
    {
        if (std::exchange(m_model.isChanged, false))
            m_due = m_fixture.time.now() + saveDelay;
    }

    void require(bool condition, const QString& complaint)
    {
        if (!condition && m_complaint.isEmpty())
            m_complaint = complaint;
    }

    /// After everything that is done.
    void check()
    {
        noteChange();
        compare();
        startAfterCrashes();
    }

    /// Nobody knows beforehand how the history names what is new.
    void nameNewEntries()
    {
        const auto& items = store().items();
        for (qsizetype row = 0; row < std::min(items.size(), m_model.items.size()); ++row) {
            auto& item = m_model.items[row];
            if (!item.id.isNull())
                continue;
            item.id = items.at(row).id;
            if (item.kind == ClipboardItem::Kind::Image && !item.imagePath)
                item.imagePath = items.at(row).imagePath;
        }
    }

    void compare()
    {
        nameNewEntries();
        const auto& items = store().items();
        require(items == m_model.items, u"other entries"_s);
        require(store().textualItems() == m_model.displayed(false), u"other texts, or another order"_s);
        require(store().imageItems() == m_model.displayed(true), u"other images, or another order"_s);
        require(
            m_seenTexts->areCurrent() && m_seenImages->areCurrent(), u"other rows than a view knows of"_s);
        require(m_inserted == m_model.inserted, u"not every new entry was announced once"_s);
        require(m_fixture.time.pending() == (m_due ? 1 : 0), u"another time to save"_s);
        for (const auto& file : ownFiles(items))
            require(m_imageHashes.contains(hashOfFile(file)), u"an image is lost or broken"_s);
        const auto index = readIndex();
        require(!QFile::exists(indexFile())
                || std::ranges::any_of(m_saves,
                    [&index](const auto& save) { return HistoryModel::inWholeSeconds(save) == index; }),
            u"an index that nobody saved"_s);
    }

    void compareSettled()
    {
        require(readIndex().value_or(QList<ClipboardItem>()) == HistoryModel::inWholeSeconds(m_saves.last()),
            u"another index"_s);
        m_saves = { m_saves.last() };
        if (!m_failedSinceStart)
            lookIntoFolder(store().items());
    }

    void lookIntoFolder(const QList<ClipboardItem>& items)
    {
        require(
            toSet(imageFiles()) == toSet(ownFiles(items)), u"other image files than those of the entries"_s);
        require(
            std::filesystem::status(native(folder())).permissions() == perms::owner_all, u"an open folder"_s);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(native(folder()))) {
            const auto name = QString::fromStdString(entry.path().string());
            const auto mode
                = entry.is_directory() ? perms::owner_all : perms::owner_read | perms::owner_write;
            require(entry.status().permissions() == mode, u"an open file"_s);
            require(entry.is_directory() || name == indexFile() || m_imageHashes.contains(hashOfFile(name)),
                u"a stray file, or half of one"_s);
        }
    }

    void startAfterCrashes()
    {
        m_ignoresCalls = true;
        const auto aside = m_fixture.locations.folder + "/aside"_L1;
        for (const auto& crash : std::exchange(m_crashes, {})) {
            if (!m_complaint.isEmpty())
                break;
            require(QDir().rename(folder(), aside) && QDir().rename(crash.folder, folder()), u"no room"_s);
            {
                ManualTime time;
                ManualQueues queues;
                const ClipboardStore store(m_fixture.settings, m_fixture.locations, time, time, queues);
                recognise(store.items());
                queues.runAll();
                lookIntoFolder(store.items());
            }
            QDir(folder()).removeRecursively();
            require(QDir().rename(aside, folder()), u"no way back"_s);
            if (!m_complaint.isEmpty())
                m_complaint += u", after a kill before "_s + crash.call;
        }
        m_ignoresCalls = false;
    }

    /// Finds what came back among the states that may come back.
    void recognise(const QList<ClipboardItem>& items)
    {
        const auto found = std::ranges::find_if(
            m_saves, [&items](const auto& save) { return HistoryModel::loaded(save) == items; });
        require(found != m_saves.end(), u"a history that nobody saved"_s);
        if (found == m_saves.end())
            return;
        m_saves.erase(m_saves.begin(), found);
        // An entry comes back without its image only when somebody has removed it.
        for (const auto& file : ownFiles(m_saves.first()))
            require(QFile::exists(file) || !ownFiles(m_model.items).contains(file), u"an image is lost"_s);
    }

    [[nodiscard]] ClipboardStore& store() const { return *m_fixture.store; }
    [[nodiscard]] QString folder() const { return m_fixture.locations.folder + QStringLiteral("/Nimbarrow"); }
    [[nodiscard]] QString indexFile() const { return folder() + QStringLiteral("/index.json"); }
    [[nodiscard]] std::optional<QList<ClipboardItem>> readIndex() const
    {
        const auto json = privatefiles::read(indexFile(), clipboardindex::maxSize);
        return json ? clipboardindex::decode(*json) : std::nullopt;
    }

    [[nodiscard]] QStringList imageFiles() const
    {
        QStringList files;
        for (const auto& file : QDir(folder() + "/images"_L1).entryInfoList({ u"*.png"_s }, QDir::Files))
            files << file.filePath();
        return files;
    }

    /// The image files that the history itself keeps for these entries.
    [[nodiscard]] QStringList ownFiles(const QList<ClipboardItem>& items) const
    {
        QStringList files;
        for (const auto& item : items) {
            auto named = item.filePaths.value_or(QStringList());
            if (item.imagePath)
                named << *item.imagePath;
            std::ranges::copy_if(named, std::back_inserter(files),
                [this](const auto& path) { return path.startsWith(folder() + u'/'); });
        }
        return files;
    }

    [[nodiscard]] QString foreignFile(int number) const
    {
        return u"%1/foreign %2.%3"_s.arg(m_fixture.locations.folder)
            .arg(number % 6)
            .arg(number % 6 < 4 ? u"png"_s : u"txt"_s);
    }

    Disk m_disk;
    HistoryFixture m_fixture;
    HistoryModel m_model;
    std::optional<SeenRows> m_seenTexts;
    std::optional<SeenRows> m_seenImages;
    QList<Pending> m_pending;
    QStringList m_imageHashes;
    /// When the next save is due.
    std::optional<Clock::Instant> m_due;
    /// The state that was last seen on the disk, and what was to be saved since.
    QList<QList<ClipboardItem>> m_saves { {} };
    bool m_isSaving = false;
    bool m_savesAgain = false;
    QList<Crash> m_crashes;
    QString m_complaint;
    int m_inserted = 0;
    QStringList m_calls;
    bool m_ignoresCalls = false;
    bool m_failedSinceSave = false;
    bool m_failedSinceStart = false;
    std::optional<FileCalls> m_fileCalls;
};

} // namespace nimbarrow
