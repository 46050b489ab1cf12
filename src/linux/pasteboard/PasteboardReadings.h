#pragma once

#include "linux/pasteboard/PasteboardLimits.h"
#include "linux/pasteboard/PasteboardSnapshot.h"

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>

namespace nimbarrow {

/// What is being read at one time, a few at most, each with whom its content is for. The contents are given
/// in the order of the readings: one that is there early waits for those before it, but not for long.
template <typename Reading>
class PasteboardReadings {
public:
    using Done = std::function<void(PasteboardSnapshot)>;

    /// `order` is how long the others wait for a reading, from when the next one was added.
    explicit PasteboardReadings(std::chrono::milliseconds order)
        : m_order(order)
    {
    }

    void add(std::unique_ptr<Reading> reading, Done done)
    {
        if (!m_entries.empty())
            m_entries.back().waitedForUntil = PasteboardInstant::clock::now() + m_order;
        makeRoom();
        m_entries.push_back({ std::move(reading), std::move(done) });
    }

    /// `visit` gets each Reading, until it returns true.
    template <typename Visit>
    bool any(Visit visit)
    {
        return std::any_of(m_entries.begin(), m_entries.end(),
            [&visit](const Entry& entry) { return visit(*entry.reading); });
    }

    void reportResults()
    {
        const auto now = PasteboardInstant::clock::now();
        bool waits = false;
        for (auto& entry : m_entries) {
            if (!entry.content)
                entry.content = entry.reading->takeResult();
            if (entry.content && !waits)
                entry.done(*std::exchange(entry.content, std::nullopt));
            if (now >= entry.waitedForUntil)
                entry.waitedForUntil = PasteboardInstant::min();
            waits = waits || entry.isWaitedFor();
        }
        m_entries.remove_if([](const Entry& entry) { return entry.isOver(); });
    }

    void expire(PasteboardInstant now)
    {
        if (now < deadline())
            return;
        for (auto& entry : m_entries)
            entry.reading->expire(now);
        reportResults();
    }

    [[nodiscard]] PasteboardInstant deadline() const
    {
        auto first = PasteboardInstant::max();
        for (const auto& entry : m_entries) {
            first = std::min(first, entry.reading->deadline());
            if (entry.isWaitedFor())
                first = std::min(first, entry.waitedForUntil);
        }
        return first;
    }

private:
    struct Entry {
        [[nodiscard]] bool isOver() const { return !content && reading->over(); }
        [[nodiscard]] bool isWaitedFor() const
        {
            return !reading->finished() && waitedForUntil != PasteboardInstant::min();
        }

        std::unique_ptr<Reading> reading;
        Done done;
        /// What waits for those before it.
        std::optional<PasteboardSnapshot> content {};
        /// The beginning of time once the others have stopped waiting.
        PasteboardInstant waitedForUntil = PasteboardInstant::max();
    };

    /// Contents that wait for their turn take no room: nothing is expected of their owners any more.
    void makeRoom()
    {
        const auto isOpen = [](const Entry& entry) { return !entry.reading->over(); };
        const auto open = std::count_if(m_entries.begin(), m_entries.end(), isOpen);
        if (static_cast<std::size_t>(open) < mostReadings)
            return;
        const auto spare = std::find_if(m_entries.begin(), m_entries.end(), [&isOpen](const Entry& entry) {
            return isOpen(entry) && entry.reading->finished() && !entry.content;
        });
        const auto least
            = spare != m_entries.end() ? spare : std::find_if(m_entries.begin(), m_entries.end(), isOpen);
        // The oldest of them waits for nobody, so it has no content that could be lost.
        if (!least->reading->finished())
            least->done({});
        m_entries.erase(least);
        reportResults();
    }

    std::chrono::milliseconds m_order;
    std::list<Entry> m_entries;
};

} // namespace nimbarrow
