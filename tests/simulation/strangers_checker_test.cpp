#include "tests/simulation/strangers_checker.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

const std::string other = "::ffff:192.168.1.3:52700";
constexpr std::uint8_t busy = 0x7D;
constexpr std::uint8_t pong = 0x7F;
constexpr std::uint8_t panSide = 0x15;

TEST(StrangersChecker, AllowsOneAnswerToWhatAClientMaySay) {
    Evidence evidence;
    evidence.datagrams = {{at(1), other, {0x01}}, {at(2), other, {0x01, 0x00}}};
    evidence.sent = {{other}, {{at(1), 0, {0x01, busy}}, {at(2), 0, {0x01, pong}}, {at(3), 0, {0x01, panSide}}}};
    EXPECT_TRUE(checkStrangers(evidence).empty());
}

TEST(StrangersChecker, FindsAnAnswerToAnotherReceiversRefusal) {
    Evidence evidence;
    evidence.datagrams = {{at(1), other, {0x01, busy}}};
    evidence.sent = {{other}, {{at(1), 0, {0x01, busy}}}};
    EXPECT_EQ(checkStrangers(evidence).size(), 1u);
}

TEST(StrangersChecker, FindsAReceiverThatIsTakenForAClient) {
    Evidence evidence;
    evidence.datagrams = {{at(1), other, {0x01, panSide, 0x00}}};
    evidence.sent = {{other}, {{at(1.2), 0, {0x01, panSide}}}};
    EXPECT_EQ(checkStrangers(evidence).size(), 1u);
}

TEST(StrangersChecker, FindsAClientThatIsServedOnForWhatOnlyAReceiverSays) {
    Evidence evidence;
    evidence.datagrams = {{at(1), other, {0x01, 0x00}}, {at(7), other, {0x01, busy}}};
    evidence.sent = {{other}, {{at(8), 0, {0x01, panSide}}}};
    EXPECT_EQ(checkStrangers(evidence).size(), 1u);
}

TEST(StrangersChecker, LeavesPhonesToOthers) {
    Evidence evidence;
    evidence.sent = {{"::ffff:192.168.1.100:49152"}, {{at(1), 0, {0x01, panSide}}}};
    EXPECT_TRUE(checkStrangers(evidence).empty());
}

} // namespace
} // namespace lumbrine::simulation
