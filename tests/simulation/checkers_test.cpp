// Who is in control, and what is on a wire.
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/surface_wire.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

ReceivedDatagram from(const std::string& sender, double time, Bytes bytes) {
    return {at(time), sender, std::move(bytes)};
}

const Bytes move3{0x01, 0x01, 0x03, 0x20, 0x00};
const Bytes takeOver{0x01, 0x25};

TEST(OwnerOracle, CountsOnlyTheDeviceInControl) {
    const Acceptance acceptance =
        acceptedOf({from("a", 0, move3), from("b", 1, move3), from("b", 5.9, move3), from("a", 5.95, move3)});
    EXPECT_EQ(acceptance.accepted.size(), 2u);
    EXPECT_EQ(acceptance.changes.size(), 1u);
}

TEST(OwnerOracle, GivesControlToTheNextAfterSixSilentSeconds) {
    EXPECT_EQ(acceptedOf({from("a", 0, move3), from("b", 5.999, move3)}).accepted.size(), 1u);
    EXPECT_EQ(acceptedOf({from("a", 0, move3), from("b", 6.0, move3)}).accepted.size(), 2u);
}

TEST(OwnerOracle, IgnoresWhatOnlyAReceiverSends) {
    const std::string receiver = "::ffff:192.168.1.2:52700";
    const std::vector<ReceivedDatagram> received{from("a", 1, {0x01, 0x1F}), from(receiver, 1, move3),
                                                 from("b", 1, move3), from("b", 4, {0x01, 0x7F}),
                                                 from("c", 7.5, move3)};
    const Acceptance acceptance = acceptedOf(received);
    ASSERT_EQ(acceptance.accepted.size(), 2u);
    EXPECT_EQ(acceptance.accepted[0].sender, "b");
    EXPECT_EQ(acceptance.accepted[1].sender, "c");
}

TEST(OwnerOracle, NumbersOwnershipsByDevice) {
    const auto hello = [](const std::string& sender, double time) {
        return from(sender, time, {0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 7});
    };
    const Acceptance acceptance =
        acceptedOf({hello("a", 0), hello("c", 1), from("b", 2, takeOver), from("c", 2, takeOver)});
    EXPECT_EQ(acceptance.numbers, (std::vector<int>{1, 1, 2, 3}));
    EXPECT_EQ(acceptance.endOf(1), at(2));
    EXPECT_EQ(acceptance.endOf(3), TimePoint::max());
}

TEST(OwnerOracle, KeepsTheOwnershipOfADeviceThroughSilence) {
    const auto hello = [](const std::string& sender, double time) {
        return from(sender, time, {0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 7});
    };
    const Acceptance acceptance =
        acceptedOf({hello("a", 0), hello("c", 7), from("c", 14, move3), from("b", 21, move3)});
    EXPECT_EQ(acceptance.numbers, (std::vector<int>{1, 1, 1, 2}));
}

TEST(SurfaceWire, ReadsWholeSequences) {
    const SurfaceWire wire = readWire({{at(0), {0xFF}},
                                       {at(1), {0xB0, 0x0F, 0x03}},
                                       {at(1), {0x90, 0x00, 0x7F}},
                                       {at(1), {0xB0, 0x2F, 0x40}},
                                       {at(2), {0xB0, 0x03, 0x40}},
                                       {at(2), {0xB0, 0x23, 0x00}}});
    EXPECT_TRUE(wire.violations.empty());
    ASSERT_EQ(wire.actions.size(), 2u);
    EXPECT_TRUE(wire.actions[0].sameAs(edge(1, 3, 0, 1)));
    EXPECT_EQ(wire.actions[1].value, 8192);
}

TEST(SurfaceWire, ComplainsOfTornSequences) {
    EXPECT_FALSE(readWire({{at(0), {0xB0, 0x2F, 0x40}}}).violations.empty());
    EXPECT_FALSE(readWire({{at(0), {0xB0, 0x0F, 0x03}}}).violations.empty());
    EXPECT_FALSE(readWire({{at(0), {0xB0, 0x03, 0x40}}, {at(0), {0xB0, 0x24, 0x00}}}).violations.empty());
}

} // namespace
} // namespace lumbrine::simulation
