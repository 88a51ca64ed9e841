// Which wishes wait, which give way, and which comes next.
#include "model/tracks/wish_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WishListTest : public testing::Test {
protected:
    Wish wishFor(const std::vector<std::string>& ids, TrackSwitch which = TrackSwitch::mute, bool enabled = true) {
        Wish wish{.which = which, .enabled = enabled, .arrived = now, .asked = ids.size()};
        for (const std::string& id : ids)
            wish.open.push_back({.id = id, .name = "Track " + id});
        return wish;
    }

    static std::vector<std::string> idsOf(const Wish* wish) {
        std::vector<std::string> ids;
        if (wish != nullptr)
            for (const TrackIdentity& track : wish->open)
                ids.push_back(track.id);
        return ids;
    }

    // Takes the next wish off the list.
    std::vector<std::string> takeNext() {
        const Wish* const wish = list.next(now);
        const auto ids = idsOf(wish);
        if (wish != nullptr) list.remove(wish->number);
        return ids;
    }

    TimePoint now = TimePoint(seconds(100));
    WishList list;
};

TEST_F(WishListTest, GivesTheOldestFirst) {
    list.add(wishFor({"1"}));
    list.add(wishFor({"2"}));
    EXPECT_THAT(takeNext(), ElementsAre("1"));
    EXPECT_THAT(takeNext(), ElementsAre("2"));
    EXPECT_THAT(takeNext(), IsEmpty());
}

TEST_F(WishListTest, LetsTheNewestWinForEachTrackAndKind) {
    list.add(wishFor({"1", "2"}));
    list.add(wishFor({"2"}, TrackSwitch::solo));
    list.add(wishFor({"2", "3"}, TrackSwitch::mute, false));
    const Wish* const first = list.next(now);
    EXPECT_THAT(idsOf(first), ElementsAre("1"));
    EXPECT_EQ(first->asked, 1U);
    EXPECT_THAT(takeNext(), ElementsAre("1"));
    EXPECT_THAT(takeNext(), ElementsAre("2")); // the solo
    EXPECT_THAT(takeNext(), ElementsAre("2", "3"));
}

TEST_F(WishListTest, ForgetsAWishThatHasGivenWayForAllItsTracks) {
    list.add(wishFor({"1", "2"}));
    list.add(wishFor({"2", "1"}, TrackSwitch::mute, false));
    EXPECT_THAT(takeNext(), ElementsAre("2", "1"));
    EXPECT_THAT(takeNext(), IsEmpty());
}

TEST_F(WishListTest, KeepsAWishThatSomebodyIsAtWorkOn) {
    list.add(wishFor({"1"}));
    const std::uint64_t number = list.next(now)->number;
    list.find(number)->inHand = true;
    list.add(wishFor({"1"}, TrackSwitch::mute, false));
    ASSERT_NE(list.find(number), nullptr);
    EXPECT_THAT(idsOf(list.find(number)), IsEmpty());
    EXPECT_THAT(takeNext(), ElementsAre("1"));
    EXPECT_THAT(takeNext(), IsEmpty());
}

TEST_F(WishListTest, HoldsThirtyTwo) {
    for (int i = 0; i < 32; ++i)
        EXPECT_FALSE(list.add(wishFor({std::to_string(i)})));
    list.next(now)->inHand = true;
    const auto tooMany = list.add(wishFor({"32"}));
    ASSERT_TRUE(tooMany);
    EXPECT_THAT(idsOf(&*tooMany), ElementsAre("1")); // the oldest that nobody is at work on
}

TEST_F(WishListTest, WaitsForTheTimeOfAnAttempt) {
    list.add(wishFor({"1"}));
    list.next(now)->notBefore = now + seconds(1);
    EXPECT_EQ(list.next(now + seconds(0.999)), nullptr);
    EXPECT_NE(list.next(now + seconds(1)), nullptr);
    EXPECT_EQ(list.nextAttempt(), now + seconds(1));
}

TEST_F(WishListTest, KnowsWhenTheOldestExpires) {
    EXPECT_EQ(list.nextExpiry(), std::nullopt);
    list.add(wishFor({"1"}));
    now += seconds(1);
    list.add(wishFor({"2"}));
    EXPECT_EQ(list.nextExpiry(), now + seconds(2));
    EXPECT_FALSE(WishList::isExpired(*list.next(now), now + seconds(1.999)));
    EXPECT_TRUE(WishList::isExpired(*list.next(now), now + seconds(2)));
}

TEST_F(WishListTest, GivesAwayWhatNobodyIsAtWorkOn) {
    list.add(wishFor({"1"}));
    list.next(now)->inHand = true;
    list.add(wishFor({"2"}));
    const auto taken = list.take([](const Wish&) { return true; });
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_THAT(idsOf(taken.data()), ElementsAre("2"));
    EXPECT_EQ(list.nextExpiry(), std::nullopt);
}

} // namespace
} // namespace lumbrine
