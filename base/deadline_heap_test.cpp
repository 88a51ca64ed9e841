#include "base/deadline_heap.h"

namespace lumbrine {
namespace {

using Heap = DeadlineHeap<int, std::string>;

std::vector<std::string> dueAt(Heap& heap, int now) {
    std::vector<std::string> items;
    while (auto item = heap.popDue(now))
        items.push_back(*item);
    return items;
}

TEST(DeadlineHeap, GivesTheSoonestFirstAndNothingBeforeItsTime) {
    Heap heap;
    heap.push(30, "c");
    heap.push(10, "a");
    heap.push(20, "b");
    EXPECT_EQ(heap.nextDue(), 10);
    EXPECT_EQ(dueAt(heap, 9), std::vector<std::string>{});
    EXPECT_EQ(dueAt(heap, 20), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(heap.nextDue(), 30);
}

TEST(DeadlineHeap, KeepsTheOrderOfEqualDeadlines) {
    Heap heap;
    std::vector<std::string> expected;
    for (int i = 0; i < 50; ++i) {
        heap.push(5, std::to_string(i));
        expected.push_back(std::to_string(i));
    }
    EXPECT_EQ(dueAt(heap, 5), expected);
    EXPECT_EQ(heap.nextDue(), std::nullopt);
}

TEST(DeadlineHeap, GivesUpTheItemsThatACallerPicksAndKeepsTheOthersInOrder) {
    Heap heap;
    for (const char* name : {"b", "x", "a", "x"})
        heap.push(name[0], name);
    EXPECT_EQ(heap.takeIf([](const std::string& item) { return item == "x"; }).size(), 2u);
    EXPECT_EQ(dueAt(heap, 'z'), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(heap.empty());
}

} // namespace
} // namespace lumbrine
