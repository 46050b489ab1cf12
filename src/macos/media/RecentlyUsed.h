#pragma once

#include <QString>

#include <list>
#include <utility>

namespace nimbarrow {

/// Keeps the values that were used last, by their text. One thread at a time.
template <typename Value>
class RecentlyUsed final {
public:
    explicit RecentlyUsed(std::size_t most)
        : m_most(most)
    {
    }

    /// The kept value of `key`, or null; it stays where it is until the next `keep`.
    [[nodiscard]] Value* find(const QString& key)
    {
        for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
            if (entry->first != key)
                continue;
            m_entries.splice(m_entries.begin(), m_entries, entry);
            return &entry->second;
        }
        return nullptr;
    }

    /// Lets go of the one that was not used for longest, when there are too many. `key` is not kept yet.
    Value& keep(const QString& key, Value value)
    {
        m_entries.emplace_front(key, std::move(value));
        if (m_entries.size() > m_most)
            m_entries.pop_back();
        return m_entries.front().second;
    }

private:
    std::size_t m_most;
    std::list<std::pair<QString, Value>> m_entries;
};

} // namespace nimbarrow
