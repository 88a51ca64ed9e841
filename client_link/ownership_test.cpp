// The number of the ownership: which changes of control count, and who learns of them.
#include "client_link/testing/datagrams.h"
#include "client_link/testing/served_peers.h"

namespace lumbrine {
namespace {

class OwnershipTest : public testing::Test, public ServedPeers {
protected:
    const std::string phone = "::ffff:192.168.1.20:50000";
    const std::string samePhone = "::ffff:192.168.1.20:50001"; // the same device after a restart
    const std::string tablet = "::ffff:192.168.1.30:50000";

    static std::string deviceAt(int number) { return "::ffff:192.168.1.40:" + std::to_string(50000 + number); }
    static Bytes helloWith(std::uint8_t token) { return {0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, token}; }

    // The ownership in which the peer's datagram was delivered; absent when it was refused.
    std::optional<Ownership> deliveredIn(const std::string& peer, const Bytes& bytes) {
        lastOwnership.reset();
        from(peer, bytes);
        return lastOwnership;
    }
};

TEST_F(OwnershipTest, IsAbsentWithoutALiveOwner) {
    EXPECT_EQ(server.ownership(), std::nullopt);
    const auto first = deliveredIn(phone, touch);
    EXPECT_EQ(server.ownership(), first);
    pass(5.999);
    EXPECT_EQ(server.ownership(), first);
    pass(0.001);
    EXPECT_EQ(server.ownership(), std::nullopt);
}

TEST_F(OwnershipTest, IsReportedWhenItIsTakenFromALiveClient) {
    std::vector<std::string> taken;
    server.onTakeOver = [&](const std::string& by, const std::string& from) { taken.push_back(by + " from " + from); };
    from(phone, helloWith(1));
    from(tablet, touch); // refused
    from(phone, takeOver);
    from(samePhone, helloWith(1));
    EXPECT_THAT(taken, testing::IsEmpty());
    from(tablet, takeOver);
    from(tablet, touch);
    EXPECT_THAT(taken, testing::ElementsAre("::ffff:192.168.1.30 from ::ffff:192.168.1.20"));
    pass(6.0);
    from(phone, takeOver); // from nobody
    EXPECT_THAT(taken, testing::SizeIs(1));
}

TEST_F(OwnershipTest, ComesWithEachDatagramOfTheOwner) {
    const auto first = deliveredIn(phone, touch);
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(deliveredIn(phone, touch), first);
    EXPECT_EQ(deliveredIn(tablet, touch), std::nullopt);
    EXPECT_EQ(deliveredIn(phone, takeOver), first); // it takes over from itself
    EXPECT_EQ(server.ownership(), first);
}

TEST_F(OwnershipTest, ChangesWithATakeOver) {
    const auto first = deliveredIn(phone, touch);
    const auto second = deliveredIn(tablet, takeOver);
    EXPECT_GT(second, first);
    EXPECT_EQ(server.ownership(), second);
}

TEST_F(OwnershipTest, ChangesTwiceWhenADeviceLosesControlAndTakesItBackAtOnce) {
    const auto first = deliveredIn(phone, touch);
    const auto second = deliveredIn(tablet, takeOver);
    const auto third = deliveredIn(phone, takeOver);
    EXPECT_LT(first, second);
    EXPECT_LT(second, third);
    EXPECT_EQ(server.ownership(), third);
}

TEST_F(OwnershipTest, ChangesWhenAnotherDeviceFollowsASilentOne) {
    const auto first = deliveredIn(phone, helloWith(5));
    pass(6.0);
    EXPECT_GT(deliveredIn(tablet, helloWith(6)), first);
}

TEST_F(OwnershipTest, StaysWhenTheDeviceHasAnotherAddress) {
    const auto first = deliveredIn(phone, helloWith(5));
    EXPECT_EQ(deliveredIn(samePhone, helloWith(5)), first);
    EXPECT_EQ(deliveredIn(samePhone, touch), first);
    EXPECT_EQ(server.ownership(), first);
    EXPECT_EQ(server.liveOwnerKey(), samePhone);
}

TEST_F(OwnershipTest, StaysWhenTheDeviceTakesOverFromItsOldAddress) {
    const auto first = deliveredIn(phone, touch);
    EXPECT_EQ(deliveredIn(samePhone, helloWith(5)), std::nullopt);
    EXPECT_EQ(deliveredIn(phone, helloWith(5)), first);
    EXPECT_EQ(deliveredIn(samePhone, takeOver), first);
}

TEST_F(OwnershipTest, ChangesWhenADeviceWithoutATokenHasAnotherAddress) {
    const auto first = deliveredIn(phone, touch);
    EXPECT_GT(deliveredIn(samePhone, takeOver), first);
}

TEST_F(OwnershipTest, StaysThroughASilenceIfNobodyElseCame) {
    const auto first = deliveredIn(phone, helloWith(5));
    pass(6.0);
    EXPECT_EQ(deliveredIn(phone, touch), first);
    pass(3600.0);
    server.broadcast(news); // forgets silent peers
    EXPECT_EQ(deliveredIn(phone, helloWith(5)), first);
    pass(3600.0);
    server.broadcast(news);
    EXPECT_EQ(deliveredIn(samePhone, helloWith(5)), first);
}

TEST_F(OwnershipTest, GoesByTheNewestTokenOfTheOwner) {
    const auto first = deliveredIn(phone, helloWith(5));
    EXPECT_EQ(deliveredIn(phone, helloWith(6)), first);
    pass(6.0);
    const auto second = deliveredIn(samePhone, helloWith(5));
    EXPECT_GT(second, first);
    EXPECT_EQ(deliveredIn(tablet, helloWith(5)), second);
}

TEST_F(OwnershipTest, IsANewcomersUntilTheDeviceHasLostControlOnce) {
    EXPECT_TRUE(deliveredIn(phone, helloWith(1))->isNewcomers);
    EXPECT_TRUE(deliveredIn(samePhone, helloWith(1))->isNewcomers); // the same ownership
    EXPECT_TRUE(deliveredIn(tablet, takeOver)->isNewcomers);
    EXPECT_FALSE(deliveredIn(samePhone, takeOver)->isNewcomers);
    EXPECT_FALSE(deliveredIn(tablet, takeOver)->isNewcomers);
    pass(3600.0);
    EXPECT_FALSE(deliveredIn(phone, helloWith(1))->isNewcomers); // known by its token
    EXPECT_TRUE(deliveredIn(deviceAt(1), takeOver)->isNewcomers);
}

TEST_F(OwnershipTest, IsNoNewcomersOfTheLatestDevices) {
    for (int device = 0; device <= static_cast<int>(PeerTable::maxFormer) + 1; ++device)
        from(deviceAt(device), takeOver);
    EXPECT_FALSE(deliveredIn(deviceAt(1), takeOver)->isNewcomers);
    EXPECT_TRUE(deliveredIn(deviceAt(0), takeOver)->isNewcomers); // forgotten
}

TEST_F(OwnershipTest, ComesWithTheTimeOfArrival) {
    pass(1.5);
    from(phone, touch);
    EXPECT_EQ(lastArrival, TimePoint() + seconds(1.5));
}

} // namespace
} // namespace lumbrine
