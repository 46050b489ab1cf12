#pragma once

#include "linux/pasteboard/SelectionPasteboard.h"
#include "support/PrivateDisplay.h"

#include <QList>

#include <atomic>
#include <memory>
#include <semaphore>
#include <thread>
#include <utility>

namespace nimbarrow {

/// Another program that copies, well- or ill-behaved, on a connection and a thread of its own.
class ClipboardOwner {
public:
    /// One that hurries on lists what it has and in the same breath copies the same as a secret. One that is
    /// busy gives nothing before it is told to go on.
    enum class Manner { Polite, SilentOnTargets, SilentOnData, SilentAfterIncr, DiesInIncr, HurriesOn, Busy };
    using Offer = QList<std::pair<QByteArray, QByteArray>>;

    virtual ~ClipboardOwner() = default;
    Q_DISABLE_COPY_MOVE(ClipboardOwner)

    /// Owns the clipboard from now on until destroyed. `pieces` of 3/4 MB each are sent where a form has no
    /// bytes.
    void copy(Offer offer, Manner manner = Manner::Polite, int pieces = 0)
    {
        m_offer = std::move(offer);
        m_manner = manner;
        m_pieces = pieces;
        // Not on the thread, which may begin only after the next program has copied.
        claim();
        // A busy one might be asked in the midst of it, and would wait here for ever.
        if (manner != Manner::Busy)
            sync();
        m_thread = std::thread([this] { serve(); });
    }

    /// Copies one text after the other, each as soon as the last one was asked for.
    void copyEach(const QList<QByteArray>& texts)
    {
        m_texts = texts;
        copy({ { "UTF8_STRING", m_texts.takeFirst() } });
    }

    /// Once for each form that a busy one is asked for.
    void goOn() { m_goOn.release(); }

    /// What was asked for, without the lists of forms.
    [[nodiscard]] int dataRequests() const { return m_dataRequests; }
    [[nodiscard]] int piecesSent() const { return m_piecesSent; }

protected:
    ClipboardOwner() = default;

    /// Makes the clipboard its own, with what is on offer now.
    virtual void claim() = 0;
    /// Returns when that has happened.
    virtual void sync() = 0;
    /// On the thread: answers until it is told to stop.
    virtual void serve() = 0;

    /// After each answer.
    void claimNext()
    {
        if (m_texts.isEmpty())
            return;
        m_offer = { { "UTF8_STRING", m_texts.takeFirst() } };
        claim();
    }

    void stop()
    {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
    }

    /// A euro sign has three bytes, so a bound of whole megabytes falls inside one.
    const QByteArray m_piece = QByteArray("\xE2\x82\xAC").repeated(1 << 18);
    Offer m_offer;
    QList<QByteArray> m_texts;
    Manner m_manner = Manner::Polite;
    int m_pieces = 0;
    std::counting_semaphore<> m_goOn { 0 };
    std::atomic_int m_dataRequests = 0;
    std::atomic_int m_piecesSent = 0;
    std::atomic_bool m_stop = false;

private:
    std::thread m_thread;
};

/// One windowing system with a clipboard of its own, and other programs there.
class PasteboardBed {
public:
    virtual ~PasteboardBed() = default;
    Q_DISABLE_COPY_MOVE(PasteboardBed)

    [[nodiscard]] virtual std::unique_ptr<SelectionPasteboard> pasteboard(
        const QByteArray& displayName, const PasteboardLimits& limits) const = 0;
    [[nodiscard]] virtual std::unique_ptr<ClipboardOwner> owner() const = 0;

    /// How an owner may fall silent here.
    [[nodiscard]] virtual QList<ClipboardOwner::Manner> silentManners() const = 0;

    /// By a program that people use.
    virtual void copy(const QByteArray& bytes, const QString& type) const = 0;
    [[nodiscard]] virtual QByteArray paste(const QString& type) const = 0;
    /// What is offered, one name on a line.
    [[nodiscard]] virtual QByteArray types() const = 0;

    const std::unique_ptr<PrivateDisplay> display;

protected:
    explicit PasteboardBed(std::unique_ptr<PrivateDisplay> display)
        : display(std::move(display))
    {
    }
};

} // namespace nimbarrow
