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
        const Ranked<Item>& last = m_heap.front();
        return size > last.size || (size == last.size && orderOf() < last.order);
    }

    void add(Ranked<Item> ranked) {
        m_heap.push_back(std::move(ranked));
        std::ranges::push_heap(m_heap, ranksBefore);
        if (m_heap.size() > m_capacity) {
            std::ranges::pop_heap(m_heap, ranksBefore);
            m_heap.pop_back();
        }
    }

    void add(RankedList&& other) {
        for (Ranked<Item>& ranked : other.m_heap) {
            add(std::move(ranked));
        }
        other.m_heap.clear();
    }

    // The items kept, first in rank first.
    std::vector<Ranked<Item>> sorted() && {
        std::ranges::sort_heap(m_heap, ranksBefore);
        return std::move(m_heap);
    }

private:
    static bool ranksBefore(const Ranked<Item>& first, const Ranked<Item>& second) {
        return first.size > second.size ||
               (first.size == second.size && first.order < second.order);
    }

    std::size_t m_capacity;
    // A heap whose top is the item that ranks last, the first to go when a better one comes.
    std::vector<Ranked<Item>> m_heap;
};

}  // namespace tallowmere
