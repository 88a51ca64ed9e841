#include "surface/strip_label.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

constexpr std::uint64_t owner = 1;
constexpr HandsOwner theOwner{.number = owner};
constexpr HandsOwner newcomer{.number = owner, .isNewcomer = true};

TEST(StripLabel, IsKnownWhileNothingCanBeTold) {
    StripLabel label;
    EXPECT_TRUE(label.isKnownTo(theOwner));
    label.show("", true);
    EXPECT_TRUE(label.isKnownTo(theOwner));
}

TEST(StripLabel, IsKnownWhenTheClientWasToldWhatTheDisplaySays) {
    StripLabel label;
    label.show("Bass", true);
    EXPECT_FALSE(label.isKnownTo(theOwner));
    label.tell("Bass", true, owner);
    EXPECT_TRUE(label.isKnownTo(theOwner));
    label.show("Vox", true);
    EXPECT_FALSE(label.isKnownTo(theOwner));
    label.tell("Bass", true, owner);
    EXPECT_FALSE(label.isKnownTo(theOwner));
    label.tell("Vox", true, owner);
    EXPECT_TRUE(label.isKnownTo(theOwner));
}

TEST(StripLabel, IsNotKnownToAnotherClient) {
    StripLabel label;
    label.show("Bass", true);
    label.tell("Bass", true, owner);
    EXPECT_FALSE(label.isKnownTo({.number = owner + 1}));
}

TEST(StripLabel, IsWhateverItIsToANewcomerUntilThatIsToldAnything) {
    StripLabel label;
    label.show("Bass", true);
    label.tell("Bass", true, owner - 1); // to the client before
    EXPECT_TRUE(label.isKnownTo(newcomer));
    label.show("Vox", true);
    EXPECT_TRUE(label.isKnownTo(newcomer));
    label.tell("Bass", true, owner);
    EXPECT_FALSE(label.isKnownTo(newcomer));
    label.tell("Vox", true, owner);
    EXPECT_TRUE(label.isKnownTo(newcomer));
}

TEST(StripLabel, IsWhateverItIsToANewcomerThatWasToldNoMoreThanAValue) {
    StripLabel label;
    label.show("Kick", true);
    label.show("-3.5", false);
    label.tell("-3.5", false, owner);
    label.show("-3.6", false);
    EXPECT_TRUE(label.isKnownTo({.number = owner, .isNewcomer = true}));
    EXPECT_FALSE(label.isKnownTo(theOwner));
}

TEST(StripLabel, StaysTheSameUnderAValue) {
    StripLabel label;
    EXPECT_TRUE(label.show("Bass", true));
    label.tell("Bass", true, owner);
    const std::uint64_t number = label.number();
    EXPECT_FALSE(label.show("-3.5", false));
    EXPECT_TRUE(label.isKnownTo(theOwner));
    label.tell("-3.5", false, owner);
    label.show("-3.4", false);
    EXPECT_TRUE(label.isKnownTo(theOwner));
    EXPECT_FALSE(label.show("Bass", true));
    EXPECT_TRUE(label.isKnownTo(theOwner));
    EXPECT_EQ(label.number(), number);
}

TEST(StripLabel, IsNotKnownUnderAModeThatComesBeforeTheFirstName) {
    StripLabel label;
    label.show("", true);
    label.tell("", true, owner);
    label.show("Off", false);
    EXPECT_FALSE(label.isKnownTo(theOwner));
    EXPECT_TRUE(label.isNameKnownTo(theOwner)); // it may be the mode of a track without a display name
    label.show("Bass", true);
    EXPECT_FALSE(label.isNameKnownTo(theOwner));
    label.tell("Bass", true, owner);
    EXPECT_TRUE(label.isKnownTo(theOwner));
}

TEST(StripLabel, OfATrackThatIsCalledLikeAValueCanBeToldAfterABlankToo) {
    StripLabel label;
    label.show("", true);
    label.tell("", true, owner);
    label.show("Off", false);
    label.tell("Off", false, owner);
    EXPECT_TRUE(label.isKnownTo(theOwner));
}

TEST(StripLabel, IsKnownUnderValuesThatFollowEachOtherOverABlank) {
    StripLabel label;
    label.show("", true);
    label.tell("", true, owner);
    for (const char* value : {"-25", "-4.7", ""}) {
        label.show(value, false);
        label.tell(value, false, owner);
        EXPECT_TRUE(label.isKnownTo(theOwner)) << value;
    }
}

TEST(StripLabel, OfATrackThatIsCalledLikeAValueCanBeToldToo) {
    StripLabel label;
    label.show("-3.5", false);
    EXPECT_FALSE(label.isKnownTo(theOwner));
    label.tell("-3.5", false, owner);
    EXPECT_TRUE(label.isKnownTo(theOwner));
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
