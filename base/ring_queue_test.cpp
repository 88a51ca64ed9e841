#include "base/ring_queue.h"

#include <memory>

namespace lumbrine {
namespace {

TEST(RingQueue, GivesItemsInTheOrderTheyCame) {
    RingQueue<int> queue;
    EXPECT_TRUE(queue.empty());
    queue.push(1);
    queue.push(2);
    EXPECT_EQ(queue.size(), 2u);
    EXPECT_EQ(queue.pop(), 1);
    EXPECT_EQ(queue.pop(), 2);
    EXPECT_TRUE(queue.empty());
}

TEST(RingQueue, KeepsTheOrderWhenItGrowsWhileItIsWrappedAround) {
    RingQueue<int> queue;
    for (int i = 0; i < 10; ++i)
        queue.push(i);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(queue.pop(), i);
    for (int i = 0; i < 100; ++i)
        queue.push(i);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(queue.pop(), i);
}

TEST(RingQueue, HoldsItemsThatOnlyMoveAndKeepsNothingOfThemAfterwards) {
    const auto item = std::make_shared<int>(1);
    RingQueue<std::shared_ptr<int>> queue;
    queue.push(item);
    queue.pop();
    EXPECT_EQ(item.use_count(), 1);
}

} // namespace
} // namespace lumbrine
