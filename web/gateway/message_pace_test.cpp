#include "web/gateway/message_pace.h"

#include <gtest/gtest.h>

namespace lumbrine::web {
namespace {

constexpr TimePoint begin{seconds(1000)};

int admitted(MessagePace& pace, TimePoint time, int messages) {
    int count = 0;
    for (int i = 0; i < messages; ++i)
        count += pace.admits(time);
    return count;
}

TEST(MessagePace, AdmitsTwoThousandMessagesWithinASecond) {
    MessagePace pace;
    EXPECT_EQ(admitted(pace, begin, 1'000), 1'000);
    EXPECT_EQ(admitted(pace, begin + seconds(0.999), 1'001), 1'000);
}

TEST(MessagePace, AdmitsAsManyInTheNextSecond) {
    MessagePace pace;
    admitted(pace, begin, 2'000);
    EXPECT_EQ(admitted(pace, begin + seconds(1), 2'001), 2'000);
}

TEST(MessagePace, AdmitsTenFingersForever) {
    MessagePace pace;
    TimePoint now = begin;
    for (int message = 0; message < 60'000; ++message, now += seconds(1.0 / 600))
        ASSERT_TRUE(pace.admits(now));
}

} // namespace
} // namespace lumbrine::web
