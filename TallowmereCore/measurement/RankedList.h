#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tallowmere {

// An item with what ranks it: larger sizes first, equal sizes in walk order.
template <typename Item>
struct Ranked {
    std::int64_t size = 0;
    std::string order;  // as WalkFolder::order: comparing bytes compares walk order
    Item item;
};

// The first `capacity` items in rank order of all that were offered, in whatever order they
// were offered: two walks that offer the same items in different orders keep the same ones.
// The items stay where they were put; the heap that ranks them holds only their sizes, the
// start of their orders and their places, so keeping an item moves 24 bytes, not its strings.
template <typename Item>
class RankedList {
public:
    explicit RankedList(std::size_t capacity) : m_capacity(capacity) {}

    // True when an item of `size` would be kept; `orderOf()` gives its order, which is only
    // asked for when its size ties with the last item kept.
    template <typename OrderOf>
    bool admits(std::int64_t size, OrderOf&& orderOf) const {
        if (m_heap.size() < m_capacity) {
            return true;
        }
        const Key& last = m_heap.front();
        return size > last.size || (size == last.size && orderOf() < m_items[last.slot].order);
    }

    void add(Ranked<Item> ranked) {
        if (m_capacity == 0) {
            return;
        }
        if (m_heap.size() < m_capacity) {
            m_heap.push_back(
                {ranked.size, prefixOf(ranked.order), static_cast<std::uint32_t>(m_items.size())});
            m_items.push_back(std::move(ranked));
            std::ranges::push_heap(m_heap, ranksBefore());
            return;
        }
        const Key last = m_heap.front();
        if (!(ranked.size > last.size ||
              (ranked.size == last.size && ranked.order < m_items[last.slot].order))) {
            return;
        }
        // The new item takes the place of the one that ranks last.
        std::ranges::pop_heap(m_heap, ranksBefore());
        m_heap.back() = {ranked.size, prefixOf(ranked.order), last.slot};
        m_items[last.slot] = std::move(ranked);
        std::ranges::push_heap(m_heap, ranksBefore());
    }

    // Takes in `other`'s items, keeping the first `capacity` of both with one selection.
    void add(RankedList&& other) {
        for (const Key& key : other.m_heap) {
            m_heap.push_back(
                {key.size, key.orderPrefix, static_cast<std::uint32_t>(m_items.size())});
            m_items.push_back(std::move(other.m_items[key.slot]));
        }
        other.m_heap.clear();
        other.m_items.clear();
        if (m_heap.size() > m_capacity) {
            const auto kept = m_heap.begin() + static_cast<std::ptrdiff_t>(m_capacity);
            std::ranges::nth_element(m_heap, kept, ranksBefore());
            m_heap.erase(kept, m_heap.end());
            compact();
        }
        std::ranges::make_heap(m_heap, ranksBefore());
    }

    // The items kept, first in rank first.
    std::vector<Ranked<Item>> sorted() && {
        std::ranges::sort(m_heap, ranksBefore());
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
        std::uint64_t orderPrefix = 0;  // see prefixOf()
        std::uint32_t slot = 0;         // in m_items
    };

    // The first eight bytes of an order as a number, missing bytes as zeros: a smaller prefix
    // means an earlier order, so most ties are settled without comparing the strings.
    static std::uint64_t prefixOf(const std::string& order) {
        std::uint64_t prefix = 0;
        for (std::size_t index = 0; index < 8; ++index) {
            prefix = (prefix << 8) |
                     (index < order.size() ? static_cast<unsigned char>(order[index]) : 0u);
        }
        return prefix;
    }

    // Orders keys first in rank first: larger sizes, then earlier in walk order.
    auto ranksBefore() const {
        return [this](const Key& first, const Key& second) {
            if (first.size != second.size) {
                return first.size > second.size;
            }
            if (first.orderPrefix != second.orderPrefix) {
                return first.orderPrefix < second.orderPrefix;
            }
            return m_items[first.slot].order < m_items[second.slot].order;
        };
    }

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
    // A heap whose top is the key of the item that ranks last, the first to go when a better
    // one comes.
    std::vector<Key> m_heap;
};

}  // namespace tallowmere
