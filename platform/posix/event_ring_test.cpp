#include "platform/posix/event_ring.h"

#include <array>
#include <numeric>
#include <thread>

namespace lumbrine {
namespace {

Bytes popFrom(EventRing& ring) {
    Bytes event(ring.nextSize());
    if (!event.empty()) ring.pop(event);
    return event;
}

Bytes counting(std::size_t size) {
    Bytes event(size);
    std::iota(event.begin(), event.end(), std::uint8_t{1});
    return event;
}

TEST(EventRing, GivesEventsBackWholeAndInOrder) {
    EventRing ring(64);
    EXPECT_TRUE(ring.push(Bytes{0x90, 0x00, 0x7F}));
    EXPECT_TRUE(ring.push(Bytes{0xFF}));
    EXPECT_EQ(popFrom(ring), (Bytes{0x90, 0x00, 0x7F}));
    EXPECT_EQ(popFrom(ring), Bytes{0xFF});
    EXPECT_EQ(ring.nextSize(), 0U);
}

TEST(EventRing, TakesAnEventOfItsWholeSizeAndNoLongerOne) {
    EventRing ring(64);
    EXPECT_FALSE(ring.push(counting(61)));
    EXPECT_TRUE(ring.push(counting(60)));
    EXPECT_EQ(popFrom(ring), counting(60));
}

TEST(EventRing, RefusesWhatDoesNotFitBesideTheOthersAndKeepsThem) {
    EventRing ring(64);
    EXPECT_TRUE(ring.push(counting(40)));
    EXPECT_FALSE(ring.push(counting(17))); // 44 + 4 + 17 > 64
    EXPECT_TRUE(ring.push(counting(12)));
    EXPECT_FALSE(ring.push(counting(1))); // four bytes are left
    EXPECT_EQ(popFrom(ring), counting(40));
    EXPECT_EQ(popFrom(ring), counting(12));
    EXPECT_TRUE(ring.push(counting(60)));
}

TEST(EventRing, HoldsNoEmptyEvent) {
    EventRing ring(64);
    EXPECT_FALSE(ring.push({}));
    EXPECT_EQ(ring.nextSize(), 0U);
}

TEST(EventRing, RunsOverItsEndAtEveryOffset) {
    EventRing ring(64);
    for (std::size_t size = 1; size <= 60; ++size)
        for (int turn = 0; turn < 64; ++turn) {
            ASSERT_TRUE(ring.push(counting(size)));
            ASSERT_EQ(popFrom(ring), counting(size));
        }
}

TEST(EventRing, DropsTheOldestEventUnread) {
    EventRing ring(64);
    ring.push(counting(5));
    ring.push(counting(7));
    ring.drop();
    EXPECT_EQ(popFrom(ring), counting(7));
}

TEST(EventRing, IsEmptyAndWholeAgainAfterClear) {
    EventRing ring(64);
    ring.push(counting(30));
    ring.push(counting(20));
    ring.clear();
    EXPECT_EQ(ring.nextSize(), 0U);
    EXPECT_TRUE(ring.push(counting(60)));
}

TEST(EventRing, LosesNothingBetweenTwoThreads) {
    constexpr std::uint32_t count = 200'000;
    EventRing ring(256);
    std::thread producer([&ring] {
        for (std::uint32_t i = 0; i < count; ++i) {
            std::array<std::uint8_t, 3> event{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8),
                                              static_cast<std::uint8_t>(i >> 16)};
            while (!ring.push(std::span(event).first(1 + i % 3)))
                std::this_thread::yield();
        }
    });
    std::uint32_t wrong = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        while (ring.nextSize() == 0)
            std::this_thread::yield();
        const Bytes event = popFrom(ring);
        if (event.size() != 1 + i % 3 || event[0] != static_cast<std::uint8_t>(i)) ++wrong;
    }
    producer.join();
    EXPECT_EQ(wrong, 0U);
    EXPECT_EQ(ring.nextSize(), 0U);
}

} // namespace
} // namespace lumbrine
