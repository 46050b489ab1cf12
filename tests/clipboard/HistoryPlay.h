#pragma once

#include "clipboard/HistoryModel.h"
#include "support/FileCalls.h"
#include "support/HistoryFixture.h"

#include <QStringList>

#include <optional>

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

    [[nodiscard]] static QList<Step> steps(quint32 seed, int count);
    [[nodiscard]] static QString describe(const QList<Step>& steps);

    explicit HistoryPlay(const Disk& disk);

    /// What was wrong first; empty when nothing was. To be called once.
    [[nodiscard]] QString play(const QList<Step>& steps);
    /// The names of the calls that changed files, in their order.
    [[nodiscard]] const QStringList& calls() const { return m_calls; }

private:
    struct Operation;
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

    [[nodiscard]] static const QList<Operation>& operations();
    int onCall(const char* name);
    void start();
    void addText(const QString& text, int number);
    void addFiles(const QStringList& paths, int number);
    void addToModel(ClipboardItem item, int number);
    void wait(std::chrono::milliseconds time);
    void runWork();
    void takeAnswer();
    /// Does in the model what the answer to a piece of work does.
    void answered(Pending pending);
    void settle();
    void flush();
    void restart();
    void openToEverybody();
    /// What is to be on the disk next: at once, or when the save that runs is over.
    void expectSave();
    void removed();
    void noteChange();

    void require(bool condition, const QString& complaint);
    /// After everything that is done.
    void check();
    /// Nobody knows beforehand how the history names what is new.
    void nameNewEntries();
    void compare();
    void compareSettled();
    void lookIntoFolder(const QList<ClipboardItem>& items);
    void startAfterCrashes();
    /// Finds what came back among the states that may come back.
    void recognise(const QList<ClipboardItem>& items);

    [[nodiscard]] ClipboardStore& store() const { return *m_fixture.store; }
    [[nodiscard]] QString folder() const { return m_fixture.locations.folder + QStringLiteral("/Nimbarrow"); }
    [[nodiscard]] QString indexFile() const { return folder() + QStringLiteral("/index.json"); }
    [[nodiscard]] std::optional<QList<ClipboardItem>> readIndex() const;
    [[nodiscard]] QStringList imageFiles() const;
    /// The image files that the history itself keeps for these entries.
    [[nodiscard]] QStringList ownFiles(const QList<ClipboardItem>& items) const;
    [[nodiscard]] QString foreignFile(int number) const;

    Disk m_disk;
    HistoryFixture m_fixture;
    HistoryModel m_model;
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
