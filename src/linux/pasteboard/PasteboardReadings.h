#pragma once

#include "linux/pasteboard/PasteboardLimits.h"
#include "linux/pasteboard/PasteboardSnapshot.h"

#include <algorithm>
#include <functional>
#include <list>
#include <memory>

namespace nimbarrow {

/// What is being read at one time, a few at most, each with whom its content is for.
template <typename Reading>
class PasteboardReadings {
public:
    using Done = std::function<void(PasteboardSnapshot)>;

    void add(std::unique_ptr<Reading> reading, Done done)
    {
        if (m_entries.size() >= mostReadings) {
            const auto spare = std::find_if(m_entries.begin(), m_entries.end(),
                [](const Entry& entry) { return entry.reading->finished(); });
            m_entries.erase(spare != m_entries.end() ? spare : m_entries.begin());
        }
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
        for (auto& entry : m_entries) {
            if (auto content = entry.reading->takeResult())
                entry.done(std::move(*content));
        }
        m_entries.remove_if([](const Entry& entry) { return entry.reading->over(); });
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
        for (const auto& entry : m_entries)
            first = std::min(first, entry.reading->deadline());
        return first;
    }

private:
    struct Entry {
        std::unique_ptr<Reading> reading;
        Done done;
    };

    std::list<Entry> m_entries;
};

} // namespace nimbarrow
