#include "web/gateway/outbox.h"

#include <gtest/gtest.h>

namespace lumbrine::web {
namespace {

Bytes meters(std::uint8_t level) {
    return {0x01, 0x11, level, level};
}

Bytes fader(std::uint8_t strip, std::uint8_t value) {
    return {0x01, 0x12, strip, 0x00, value};
}

Bytes name(std::uint8_t strip, std::uint8_t letter) {
    return {0x01, 0x10, strip, letter, ' ', ' ', ' '};
}

std::vector<Bytes> contents(Outbox& outbox) {
    std::vector<Bytes> taken;
    while (!outbox.empty())
        taken.push_back(outbox.take());
    return taken;
}

std::vector<Bytes> after(const std::vector<Bytes>& messages) {
    Outbox outbox;
    for (const Bytes& message : messages)
        EXPECT_TRUE(outbox.put(message));
    return contents(outbox);
}

TEST(Outbox, KeepsTheOrder) {
    const std::vector<Bytes> messages{name(0, 'A'), fader(0, 1), name(0, 'B'), meters(3), {}, {0x01, 0x7F}};
    EXPECT_EQ(after(messages), messages);
}

TEST(Outbox, ForgetsOlderMeters) {
    EXPECT_EQ(after({meters(1), name(0, 'A'), meters(2), meters(3)}), (std::vector{name(0, 'A'), meters(3)}));
}

TEST(Outbox, ForgetsAnOlderFaderOfTheSameStrip) {
    EXPECT_EQ(after({fader(0, 1), fader(1, 1), fader(0, 2)}), (std::vector{fader(1, 1), fader(0, 2)}));
}

TEST(Outbox, ForgetsNothingElse) {
    const std::vector<Bytes> messages{name(0, 'A'), name(0, 'A'), {0x01, 0x7D}, {0x01, 0x7D}, {}, {}, {0x11}, {0x11}};
    EXPECT_EQ(after(messages), messages);
}

TEST(Outbox, HoldsAStalledReadersMetersInOnePlace) {
    Outbox outbox;
    for (int second = 0; second < 3'600; ++second)
        for (std::uint8_t frame = 0; frame < 60; ++frame)
            ASSERT_TRUE(outbox.put(meters(frame)));
    EXPECT_EQ(contents(outbox), std::vector<Bytes>{meters(59)});
}

TEST(Outbox, HoldsTheStateOfAThousandTracks) {
    Outbox outbox;
    const Bytes row(200, 0x1B);
    for (int track = 0; track < 1'000; ++track)
        EXPECT_TRUE(outbox.put(row));
}

TEST(Outbox, RefusesWhatItHasNoRoomForAndKeepsTheRest) {
    Outbox outbox;
    const Bytes large(Outbox::mostBytes - 5, 0x00);
    ASSERT_TRUE(outbox.put(large));
    ASSERT_TRUE(outbox.put(fader(0, 1)));
    EXPECT_FALSE(outbox.put(name(0, 'A')));
    EXPECT_TRUE(outbox.put(fader(0, 2))) << "it takes the place of the other one";
    Bytes longer = fader(0, 3);
    longer.push_back(0);
    EXPECT_FALSE(outbox.put(longer));
    EXPECT_EQ(contents(outbox), (std::vector{large, fader(0, 2)}));
}

TEST(Outbox, RefusesOneMessageTooMany) {
    Outbox outbox;
    for (std::size_t i = 0; i < Outbox::mostMessages; ++i)
        ASSERT_TRUE(outbox.put({}));
    EXPECT_FALSE(outbox.put({}));
    outbox.take();
    EXPECT_TRUE(outbox.put({}));
    EXPECT_EQ(outbox.size(), Outbox::mostMessages);
}

TEST(Outbox, HasAllItsRoomAgainWhenItIsEmpty) {
    Outbox outbox;
    const Bytes whole(Outbox::mostBytes, 0x00);
    for (int time = 0; time < 3; ++time) {
        EXPECT_TRUE(outbox.put(whole));
        EXPECT_EQ(outbox.take(), whole);
    }
}

} // namespace
} // namespace lumbrine::web
