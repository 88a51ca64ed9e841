// Items that wait for their time, soonest first.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace lumbrine {

// Items with equal deadlines come out in the order in which they went in. Keeps its storage. Not synchronised.
template <typename Time, typename Item>
class DeadlineHeap {
public:
    bool empty() const { return entries.empty(); }
    std::size_t size() const { return entries.size(); }

    void push(Time due, Item item) {
        entries.push_back(Entry{due, nextNumber++, std::move(item)});
        std::push_heap(entries.begin(), entries.end(), later);
    }

    // The soonest deadline; absent when there is none.
    std::optional<Time> nextDue() const {
        if (entries.empty()) return std::nullopt;
        return entries.front().due;
    }

    // The item with the soonest deadline, if that is not after `now`.
    std::optional<Item> popDue(Time now) {
        if (entries.empty() || now < entries.front().due) return std::nullopt;
        std::pop_heap(entries.begin(), entries.end(), later);
        std::optional<Item> item(std::move(entries.back().item));
        entries.pop_back();
        return item;
    }

    // Takes out every item for which `condition` holds, soonest first, so that the caller decides when they are
    // destroyed.
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
