// What --check says without a receiver, and of the network around it.
#include "app/computer_checks.h"

#include <gmock/gmock.h>

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Bilingual inEnglish(false);

std::vector<std::string_view> wrongOf(const std::vector<Check>& checks) {
    std::vector<std::string_view> ids;
    for (const Check& check : checks)
        if (check.state == CheckState::wrong) ids.push_back(check.id);
    return ids;
}

ComputerFacts ready() {
    return {.port = 52700,
            .portIsFree = true,
            .portHolder = std::nullopt,
            .address = "192.168.1.2",
            .announces = true,
            .hasMIDI = true};
}

TEST(ComputerChecks, FindNothingWrongWithAReadyComputer) {
    const auto checks = computerChecks(ready(), inEnglish);
    EXPECT_THAT(wrongOf(checks), IsEmpty());
    EXPECT_EQ(checks.at(0).sentence, "No receiver of yours listens on UDP port 52700.");
}

TEST(ComputerChecks, FindEachThingThatIsMissing) {
    ComputerFacts facts = ready();
    facts.portIsFree = facts.announces = facts.hasMIDI = false;
    facts.address = "127.0.0.1";
    EXPECT_THAT(wrongOf(computerChecks(facts, inEnglish)), ElementsAre("port", "address", "announcement", "midi"));
}

TEST(ComputerChecks, NameTheProgramThatHasThePort) {
    ComputerFacts facts = ready();
    facts.portIsFree = false;
    EXPECT_EQ(computerChecks(facts, inEnglish).at(1).sentence, "UDP port 52700 is taken by another program.");
    facts.portHolder = "lumbrine (process 12)";
    EXPECT_EQ(computerChecks(facts, inEnglish).at(1).sentence, "UDP port 52700 is taken by lumbrine (process 12).");
}

TEST(NetworkChecks, SayNothingWhileOnlyTheOwnReceiverIsFound) {
    EXPECT_THAT(networkChecks({.announcedAs = "Studio", .found = {{"Studio", "192.168.1.2", 52700}}}, inEnglish),
                IsEmpty());
    EXPECT_THAT(networkChecks({}, inEnglish), IsEmpty());
}

TEST(NetworkChecks, FindAnAnnouncementThatDoesNotComeBack) {
    const auto checks = networkChecks({.announcedAs = "Studio", .found = {}}, inEnglish);
    EXPECT_THAT(wrongOf(checks), ElementsAre("echo"));
    EXPECT_THAT(checks.at(0).remedy, HasSubstr("5353"));
}

TEST(NetworkChecks, ListOtherReceiversWithoutBlame) {
    const auto checks = networkChecks(
        {.announcedAs = "Studio", .found = {{"Studio", "192.168.1.2", 52700}, {"Room B", "192.168.1.9", 52700}}},
        inEnglish);
    ASSERT_EQ(checks.size(), 1U);
    EXPECT_EQ(checks[0].sentence, "“Room B” is on this network, too (192.168.1.9:52700).");
    EXPECT_THAT(wrongOf(checks), IsEmpty());
}

TEST(ComputerChecks, TellWhoServesBrowsers) {
    const auto checkOf = [](bool isTaken, const std::optional<std::string>& holder) {
        return gatewayCheck({.port = 52780, .isTaken = isTaken, .holder = holder}, inEnglish);
    };
    EXPECT_EQ(checkOf(false, {}).state, CheckState::unknown);
    EXPECT_EQ(checkOf(true, "lumbrine-web (process 7)").sentence, "lumbrine-web serves browsers on TCP port 52780.");
    EXPECT_EQ(checkOf(true, {}).state, CheckState::fine);
    const Check other = checkOf(true, "python3 (process 7)");
    EXPECT_EQ(other.state, CheckState::wrong);
    EXPECT_EQ(other.sentence, "TCP port 52780 of lumbrine-web is taken by python3 (process 7).");
}

TEST(FirewallCheck, SaysHowToOpenThePortsAndDoesNotClaimThatTheyAreShut) {
    const Check check = firewallCheck("ufw", 52700, Bilingual(false));
    EXPECT_EQ(check.state, CheckState::unknown);
    EXPECT_EQ(check.sentence, "ufw is switched on; what it lets in is not known.");
    EXPECT_THAT(check.remedy, HasSubstr("sudo ufw allow 52700/udp; sudo ufw allow 5353/udp"));
}

} // namespace
} // namespace lumbrine
