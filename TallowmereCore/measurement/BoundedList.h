#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallowmere::BoundedList {

// True when an element of size `key` would enter `list` (largest first, at most `capacity`):
// a full list takes only an element strictly larger than its last, since equal sizes keep
// the order in which they were met.
template <typename Element, typename Key>
bool admits(const std::vector<Element>& list, std::int64_t key, std::size_t capacity, Key keyOf) {
    return list.size() < capacity || keyOf(list.back()) < key;
}

// Inserts `element` after every element of equal or larger size and drops what falls past
// `capacity`: the same as appending and sorting stably, largest first.
template <typename Element, typename Key>
void insert(std::vector<Element>& list, Element element, std::size_t capacity, Key keyOf) {
    const std::int64_t key = keyOf(element);
    // The list is sorted, so the place after the last element of equal or larger size is
    // found by halving.
    const auto position = std::ranges::partition_point(
        list, [&](const Element& existing) { return keyOf(existing) >= key; });
    list.insert(position, std::move(element));
    if (list.size() > capacity) {
        list.pop_back();
    }
}

}  // namespace tallowmere::BoundedList
