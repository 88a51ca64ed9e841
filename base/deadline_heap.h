// A priority queue of items with deadlines, soonest first.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace lumbrine {

// Items with equal deadlines come out in the order in which they were pushed. push and popDue reuse the storage. Not
// synchronised.
template <typename Time, typename Item>
class DeadlineHeap {
public:
    bool empty() const { return entries.empty(); }
    std::size_t size() const { return entries.size(); }

    void push(Time due, Item item) {
        entries.push_back(Entry{due, nextNumber++, std::move(item)});
        std::push_heap(entries.begin(), entries.end(), later);
    }

    // The soonest deadline; absent when the queue is empty.
    std::optional<Time> nextDue() const {
        if (entries.empty()) return std::nullopt;
        return entries.front().due;
    }

    // Removes and returns the item with the soonest deadline, if that deadline is not after `now`.
    std::optional<Item> popDue(Time now) {
        if (entries.empty() || now < entries.front().due) return std::nullopt;
        std::pop_heap(entries.begin(), entries.end(), later);
        std::optional<Item> item(std::move(entries.back().item));
        entries.pop_back();
        return item;
    }

    // Removes every item for which `condition` holds and returns them, soonest first, so that the caller decides when
    // they are destroyed.
    template <typename Condition>
    std::vector<Item> takeIf(Condition condition) {
        std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return later(b, a); });
        std::vector<Item> taken;
        std::vector<Entry> kept;
        for (Entry& entry : entries) {
            if (condition(std::as_const(entry.item))) {
                taken.push_back(std::move(entry.item));
            } else {
                kept.push_back(std::move(entry));
            }
        }
        entries = std::move(kept); // sorted, hence a heap
        return taken;
    }

private:
    struct Entry {
        Time due;
        std::uint64_t number;
        Item item;
    };

    static bool later(const Entry& a, const Entry& b) {
        return b.due < a.due || (a.due == b.due && b.number < a.number);
    }

    std::vector<Entry> entries;
    std::uint64_t nextNumber = 0;
};

} // namespace lumbrine
