#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tallowmere {

// An item with what ranks it: larger sizes first, equal sizes in walk order.
template <typename Item>
struct Ranked {
    std::int64_t size = 0;
    std::uint64_t position = 0;  // as WalkFolder::position
    Item item;
};

// The first `capacity` items in rank order of all that were offered, in whatever order they
// were offered: two walks that offer the same items in different orders keep the same ones.
// The items stay where they were put; the heap that ranks them holds only their sizes,
// positions and places, so keeping an item moves 24 bytes, not the item.
template <typename Item>
class RankedList {
public:
    explicit RankedList(std::size_t capacity) : m_capacity(capacity) {}

    // True when an item of `size` met at `position` would be kept.
    bool admits(std::int64_t size, std::uint64_t position) const {
        return m_heap.size() < m_capacity ||
               (m_capacity > 0 && ranksBefore({size, position}, m_heap.front()));
    }

    void add(Ranked<Item> ranked) {
        if (m_heap.size() < m_capacity) {
            if (m_items.empty()) {
                // Skips the first few growths, each of which would move every item.
                m_items.reserve(std::min<std::size_t>(m_capacity, 64));
                m_heap.reserve(std::min<std::size_t>(m_capacity, 64));
            }
            m_heap.push_back(
                {ranked.size, ranked.position, static_cast<std::uint32_t>(m_items.size())});
            m_items.push_back(std::move(ranked));
            // Most lists never fill; a heap is only needed to know which item goes first.
            if (m_heap.size() == m_capacity) {
                std::ranges::make_heap(m_heap, ranksBefore);
            }
            return;
        }
        if (m_capacity == 0) {
            return;
        }
        const Key last = m_heap.front();
        const Key key{ranked.size, ranked.position, last.slot};
        if (!ranksBefore(key, last)) {
            return;
        }
        // The new item takes the place of the one that ranks last.
        std::ranges::pop_heap(m_heap, ranksBefore);
        m_heap.back() = key;
        m_items[last.slot] = std::move(ranked);
        std::ranges::push_heap(m_heap, ranksBefore);
    }

    // Takes in `other`'s items, keeping the first `capacity` of both with one selection.
    void add(RankedList&& other) {
        for (const Key& key : other.m_heap) {
            m_heap.push_back({key.size, key.position, static_cast<std::uint32_t>(m_items.size())});
            m_items.push_back(std::move(other.m_items[key.slot]));
        }
        other.m_heap.clear();
        other.m_items.clear();
        if (m_heap.size() > m_capacity) {
            const auto kept = m_heap.begin() + static_cast<std::ptrdiff_t>(m_capacity);
            std::ranges::nth_element(m_heap, kept, ranksBefore);
            m_heap.erase(kept, m_heap.end());
            compact();
        }
        if (m_heap.size() == m_capacity) {
            std::ranges::make_heap(m_heap, ranksBefore);
        }
    }

    // The items kept, first in rank first.
    std::vector<Ranked<Item>> sorted() && {
        std::ranges::sort(m_heap, ranksBefore);
        std::vector<Ranked<Item>> items;
        items.reserve(m_heap.size());
        for (const Key& key : m_heap) {
            items.push_back(std::move(m_items[key.slot]));
        }
        return items;
    }

private:
    struct Key {
        std::int64_t size = 0;
        std::uint64_t position = 0;
        std::uint32_t slot = 0;  // in m_items
    };

    // Orders keys first in rank first: larger sizes, then earlier in walk order.
    static constexpr auto ranksBefore = [](const Key& first, const Key& second) {
        return first.size != second.size ? first.size > second.size
                                         : first.position < second.position;
    };

    // Drops the items no key points at, so the list holds no more than it keeps.
    void compact() {
        std::vector<Ranked<Item>> items;
        items.reserve(m_heap.size());
        for (Key& key : m_heap) {
            items.push_back(std::move(m_items[key.slot]));
            key.slot = static_cast<std::uint32_t>(items.size() - 1);
        }
        m_items = std::move(items);
    }

    std::size_t m_capacity;
    std::vector<Ranked<Item>> m_items;
    // The keys of the items; once the list is full, a heap whose top is the key of the item
    // that ranks last, the first to go when a better one comes.
    std::vector<Key> m_heap;
};

}  // namespace tallowmere
