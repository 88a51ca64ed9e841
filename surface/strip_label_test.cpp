#include "surface/strip_label.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

constexpr std::uint64_t owner = 1;

TEST(StripLabel, IsToldWhileNothingCanBe) {
    StripLabel label;
    EXPECT_TRUE(label.isTold(owner));
    label.show("", true);
    EXPECT_TRUE(label.isTold(owner));
}

TEST(StripLabel, IsToldWhenTheClientWasToldWhatTheDisplaySays) {
    StripLabel label;
    label.show("Bass", true);
    EXPECT_FALSE(label.isTold(owner));
    label.tell("Bass", true, owner);
    EXPECT_TRUE(label.isTold(owner));
    label.show("Vox", true);
    EXPECT_FALSE(label.isTold(owner));
    label.tell("Bass", true, owner);
    EXPECT_FALSE(label.isTold(owner));
    label.tell("Vox", true, owner);
    EXPECT_TRUE(label.isTold(owner));
}

TEST(StripLabel, IsNotToldToAnotherClient) {
    StripLabel label;
    label.show("Bass", true);
    label.tell("Bass", true, owner);
    EXPECT_FALSE(label.isTold(owner + 1));
}

TEST(StripLabel, StaysTheSameUnderAValue) {
    StripLabel label;
    EXPECT_TRUE(label.show("Bass", true));
    label.tell("Bass", true, owner);
    const std::uint64_t number = label.number();
    EXPECT_FALSE(label.show("-3.5", false));
    EXPECT_TRUE(label.isTold(owner));
    label.tell("-3.5", false, owner);
    label.show("-3.4", false);
    EXPECT_TRUE(label.isTold(owner));
    EXPECT_FALSE(label.show("Bass", true));
    EXPECT_TRUE(label.isTold(owner));
    EXPECT_EQ(label.number(), number);
}

TEST(StripLabel, OfATrackThatIsCalledLikeAValueCanBeToldToo) {
    StripLabel label;
    label.show("-3.5", false);
    EXPECT_FALSE(label.isTold(owner));
    label.tell("-3.5", false, owner);
    EXPECT_TRUE(label.isTold(owner));
}

TEST(StripLabel, HasANumberForEachName) {
    StripLabel label;
    EXPECT_TRUE(label.show("Bass", true));
    const std::uint64_t number = label.number();
    EXPECT_FALSE(label.show("Bass", true));
    EXPECT_EQ(label.number(), number);
    EXPECT_TRUE(label.show("Vox", true));
    EXPECT_TRUE(label.show("Bass", true));
    EXPECT_NE(label.number(), number);
}

} // namespace
} // namespace lumbrine
