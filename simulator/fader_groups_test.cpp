#include "simulator/fader_groups.h"

namespace lumbrine {
namespace {

// Tracks 1, 2 and 3 form a group at 4000, 8000 and 16000; track 4 is by itself.
class FaderGroupsTest : public testing::Test {
protected:
    FaderGroupsTest() : session("Test", tracks()) {}

    static std::vector<SimulatedTrack> tracks() {
        std::vector<SimulatedTrack> list(4);
        for (SimulatedTrack& track : list)
            track.group = 1;
        list[0].fader = FaderValue::ofRaw(4000);
        list[1].fader = FaderValue::ofRaw(8000);
        list[2].fader = FaderValue::ofRaw(16000);
        list[3].fader = FaderValue::ofRaw(1000);
        list[3].group = 0;
        return list;
    }

    int fader(int id) const { return session.find(id)->fader.raw(); }
    static FaderValue raw(std::uint16_t value) { return FaderValue::ofRaw(value); }

    SimulatedSession session;
    FaderGroups groups{session, true};
};

TEST_F(FaderGroupsTest, FollowTheFaderThatWasTouchedFirst) {
    groups.touch(1);
    groups.move(1, raw(4100));
    EXPECT_EQ(fader(1), 4100);
    EXPECT_EQ(fader(2), 8100);
    EXPECT_EQ(fader(3), 16100);
    EXPECT_EQ(fader(4), 1000);
}

TEST_F(FaderGroupsTest, StayWithinTheRangeAndComeBackFromItsEnds) {
    groups.touch(1);
    groups.move(1, raw(14000));
    EXPECT_EQ(fader(3), 16383);
    groups.move(1, raw(0));
    EXPECT_EQ(fader(2), 4000);
    EXPECT_EQ(fader(3), 12000);
}

TEST_F(FaderGroupsTest, LeaveATouchedMemberToItsFinger) {
    groups.touch(1);
    groups.touch(2);
    groups.move(1, raw(5000));
    EXPECT_EQ(fader(2), 8000);
    EXPECT_EQ(fader(3), 16383);
    groups.move(2, raw(7000)); // moves alone, because it does not lead
    EXPECT_EQ(fader(2), 7000);
    EXPECT_EQ(fader(1), 5000);
}

TEST_F(FaderGroupsTest, PassTheLeadOnWhenTheLeaderIsLetGo) {
    groups.touch(1);
    groups.touch(2);
    groups.release(1);
    groups.move(2, raw(8500));
    EXPECT_EQ(fader(1), 4500);
    EXPECT_EQ(fader(3), 16383);
    groups.release(2);
    groups.touch(3);
    groups.move(3, raw(16283));
    EXPECT_EQ(fader(1), 4400);
    EXPECT_EQ(fader(2), 8400);
}

TEST_F(FaderGroupsTest, DoNotFollowAFaderThatNobodyTouches) {
    groups.move(1, raw(5000));
    EXPECT_EQ(fader(1), 5000);
    EXPECT_EQ(fader(2), 8000);
}

TEST_F(FaderGroupsTest, DoNotFollowAtAllWhenTracksAreNotLinked) {
    FaderGroups alone(session, false);
    alone.touch(1);
    alone.move(1, raw(5000));
    EXPECT_EQ(fader(2), 8000);
}

TEST_F(FaderGroupsTest, OutliveTheRemovalOfMembersAndLeader) {
    groups.touch(1);
    session.remove(2);
    groups.move(1, raw(4100));
    EXPECT_EQ(fader(3), 16100);
    session.remove(1);
    groups.move(1, raw(4200));
    groups.release(1);
    EXPECT_EQ(fader(3), 16100);
}

} // namespace
} // namespace lumbrine
