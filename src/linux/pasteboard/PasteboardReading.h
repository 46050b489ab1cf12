#pragma once

#include "linux/pasteboard/OfferReader.h"
#include "linux/pasteboard/PasteboardTransfer.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace nimbarrow {

/// Reads what one owner offers, one form after the other, of as many as are needed.
template <typename Transfer>
class PasteboardReading {
public:
    using Instant = PasteboardInstant;

    virtual ~PasteboardReading() = default;
    Q_DISABLE_COPY_MOVE(PasteboardReading)

    void expire(Instant now)
    {
        for (const auto& transfer : m_transfers)
            transfer->expire(now);
        advance();
    }

    [[nodiscard]] Instant deadline() const
    {
        auto first = Instant::max();
        for (const auto& transfer : m_transfers)
            first = std::min(first, transfer->deadline());
        return first;
    }

    /// The content, once, when all of it is there; an owner that fails gives an empty one.
    [[nodiscard]] std::optional<PasteboardSnapshot> takeResult()
    {
        return std::exchange(m_result, std::nullopt);
    }

    /// True when no content will come of it any more.
    [[nodiscard]] bool finished() const { return m_finished; }

    /// True when it is finished and nothing is expected of an owner.
    [[nodiscard]] bool over() const { return m_finished && !m_result && m_transfers.empty(); }

protected:
    explicit PasteboardReading(const PasteboardLimits& limits)
        : m_limits(limits)
        , m_end(Instant::clock::now() + limits.whole)
    {
    }

    /// Asks the owner for one form. The limits leave it the time that is left.
    [[nodiscard]] virtual std::unique_ptr<Transfer> ask(
        const QString& target, qsizetype room, const PasteboardLimits& limits)
        = 0;

    /// The forms that a list names.
    [[nodiscard]] virtual QStringList targets(const Transfer& /*listing*/) { return {}; }

    /// Asks for the list of forms, under this name.
    void list(const QString& target) { begin(target, mostTargets * 4); }

    void read(const QStringList& targets)
    {
        m_reader.emplace(targets.size() > mostTargets ? QStringList() : targets);
        next();
    }

    void advance()
    {
        while (!m_finished && m_transfers.back()->complete()) {
            const auto& current = *m_transfers.back();
            if (m_reader)
                m_reader->take(current.bytes(), current.cut());
            else
                m_reader.emplace(current.cut() ? QStringList() : targets(current));
            next();
        }
        std::erase_if(m_transfers, [this](const auto& transfer) {
            return transfer->over() && (m_finished || transfer != m_transfers.back());
        });
    }

    /// Somebody else is the owner now: nothing more can be asked for, only awaited.
    void setSuperseded() { m_superseded = true; }
    [[nodiscard]] bool isListing() const { return !m_reader; }

    void finish()
    {
        m_finished = true;
        // What the old owner can no longer give is the new owner's to tell.
        if (m_reader && (!m_superseded || m_reader->snapshot().hasContent()))
            m_result = m_reader->snapshot();
    }

    /// The last is the current one; those before it are being drained.
    [[nodiscard]] const std::vector<std::unique_ptr<Transfer>>& transfers() const { return m_transfers; }

private:
    void next()
    {
        const auto target = m_reader->next();
        if (target.isEmpty() || m_superseded || Instant::clock::now() >= m_end)
            finish();
        else
            begin(target, m_reader->room(m_limits));
    }

    void begin(const QString& target, qsizetype room)
    {
        auto limits = m_limits;
        limits.whole = std::chrono::duration_cast<std::chrono::milliseconds>(m_end - Instant::clock::now());
        m_transfers.push_back(ask(target, room, limits));
    }

    PasteboardLimits m_limits;
    Instant m_end;
    std::vector<std::unique_ptr<Transfer>> m_transfers;
    std::optional<OfferReader> m_reader;
    std::optional<PasteboardSnapshot> m_result;
    bool m_superseded = false;
    bool m_finished = false;
};

} // namespace nimbarrow
