#pragma once

#include "linux/pasteboard/SelectionPasteboard.h"

#include <QList>

#include <memory>
#include <semaphore>
#include <utility>

namespace nimbarrow {

/// Another program that copies, well- or ill-behaved.
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
    virtual void copy(Offer offer, Manner manner = Manner::Polite, int pieces = 0) = 0;

    /// Copies one text after the other, each as soon as the last one was asked for.
    virtual void copyEach(const QList<QByteArray>& texts) = 0;

    /// Once for each form that a busy one is asked for.
    void goOn() { m_goOn.release(); }

    /// What was asked for, without the lists of forms.
    [[nodiscard]] virtual int dataRequests() const = 0;
    [[nodiscard]] virtual int piecesSent() const = 0;

protected:
    ClipboardOwner() = default;

    void waitToGoOn() { m_goOn.acquire(); }

private:
    std::counting_semaphore<> m_goOn { 0 };
};

/// One windowing system with a clipboard of its own, and other programs there.
class PasteboardBed {
public:
    virtual ~PasteboardBed() = default;
    Q_DISABLE_COPY_MOVE(PasteboardBed)

    [[nodiscard]] virtual std::unique_ptr<SelectionPasteboard> pasteboard(
        const PasteboardLimits& limits) const = 0;
    /// Of a windowing system that is not there.
    [[nodiscard]] virtual std::unique_ptr<SelectionPasteboard> nowhere() const = 0;
    [[nodiscard]] virtual std::unique_ptr<ClipboardOwner> owner() const = 0;

    /// How an owner may fall silent here.
    [[nodiscard]] virtual QList<ClipboardOwner::Manner> silentManners() const = 0;

    /// By a program that people use.
    virtual void copy(const QByteArray& bytes, const QString& type) const = 0;
    [[nodiscard]] virtual QByteArray paste(const QString& type) const = 0;
    /// What is offered, one name on a line.
    [[nodiscard]] virtual QByteArray types() const = 0;

    /// Ends the windowing system at once, as when it crashes.
    virtual void kill() = 0;

protected:
    PasteboardBed() = default;
};

} // namespace nimbarrow
