// A first-in, first-out queue that reuses its storage.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace lumbrine {

// The storage grows to the largest number of items ever held at once; after that nothing is allocated. Items must be
// default constructible and movable. Not synchronised.
template <typename Item>
class RingQueue {
public:
    bool empty() const { return count == 0; }
    std::size_t size() const { return count; }

    void push(Item item) {
        if (count == items.size()) grow();
        items[(first + count) & (items.size() - 1)] = std::move(item);
        ++count;
    }

    // The queue must not be empty. A moved-from item stays in the storage until its place is reused.
    Item pop() {
        Item item = std::move(items[first]);
        first = (first + 1) & (items.size() - 1);
        --count;
        return item;
    }

private:
    void grow() {
        std::vector<Item> larger(items.empty() ? 16 : items.size() * 2); // a power of two, so that a mask wraps around
        for (std::size_t i = 0; i < count; ++i)
            larger[i] = std::move(items[(first + i) & (items.size() - 1)]);
        items = std::move(larger);
        first = 0;
    }

    std::vector<Item> items;
    std::size_t first = 0;
    std::size_t count = 0;
};

} // namespace lumbrine
