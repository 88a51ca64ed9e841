// The card of the first set-up: what it says, when it goes and when it comes back.
#include "app/set_up_card.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

const Bilingual cardEnglish(false);

PublishedState everythingWorks() {
    PublishedState published;
    published.health.port = 52700;
    published.health.udp.state = published.health.midi.state = LinkHealth::State::up;
    published.health.announcement = {.state = LinkHealth::State::up, .detail = "Studio"};
    published.health.surfaceAWasHeard = published.health.surfaceBWasHeard = true;
    published.huiConnected = published.iosConnected = true;
    published.iosClientDesc = published.health.lastClient = "::ffff:192.168.1.7";
    published.winW = 16;
    published.localIP = "192.168.1.2";
    return published;
}

SetUpCard cardOf(const PublishedState& published) {
    return setUpCard(published, HostSystem::linuxDesktop, cardEnglish);
}

// What there is to do, and in which row it stands.
std::map<std::size_t, std::string> advices(const SetUpCard& card) {
    std::map<std::size_t, std::string> all;
    for (std::size_t i = 0; i < card.rows.size(); ++i)
        if (!card.rows[i].advice.empty()) all[i] = card.rows[i].advice;
    return all;
}

std::vector<CheckState> states(const SetUpCard& card) {
    std::vector<CheckState> all;
    for (const SetUpRow& row : card.rows)
        all.push_back(row.state);
    return all;
}

TEST(SetUpCard, HasFourTicksWhenEverythingWorks) {
    const SetUpCard card = cardOf(everythingWorks());
    EXPECT_EQ(states(card), std::vector<CheckState>(4, CheckState::fine));
    EXPECT_EQ(card.rows[1].text, "Pro Tools talks to “Lumbrine” and “Lumbrine B”.");
    EXPECT_EQ(card.rows[2].text, "192.168.1.7 is connected.");
    EXPECT_THAT(advices(card), IsEmpty());
}

TEST(SetUpCard, SaysHowToSetUpBothControllers) {
    PublishedState published = everythingWorks();
    published.huiConnected = published.health.surfaceAWasHeard = published.health.surfaceBWasHeard = false;
    published.winW = 8;
    const SetUpCard card = cardOf(published);
    EXPECT_EQ(card.rows[1].state, CheckState::waiting);
    EXPECT_THAT(advices(card), ElementsAre(Pair(1, AllOf(HasSubstr("Setup ▸ Peripherals"), HasSubstr("Lumbrine B")))));
}

TEST(SetUpCard, TakesOneSurfaceForASetUpThatIsDone) {
    PublishedState published = everythingWorks();
    published.winW = 8;
    published.health.surfaceBWasHeard = false;
    EXPECT_EQ(states(cardOf(published)), std::vector<CheckState>(4, CheckState::fine));
    EXPECT_THAT(cardOf(published).rows[1].text, HasSubstr("“Lumbrine B” is not set up: 8 strips."));
}

TEST(SetUpCard, AdvisesOnTheFirstThingThatIsMissing) {
    PublishedState published = everythingWorks();
    published.iosConnected = false;
    published.health.lastClient.clear();
    EXPECT_THAT(advices(cardOf(published)), ElementsAre(Pair(2, HasSubstr("Open the app on a phone"))));
    published.health.midi.state = LinkHealth::State::down;
    EXPECT_THAT(advices(cardOf(published)), ElementsAre(Pair(0, HasSubstr("Start a JACK server"))));
}

TEST(SetUpCard, AdvisesOnAFaultBeforeWhatIsStillToDo) {
    PublishedState published;
    published.health.midi.state = LinkHealth::State::up;
    published.health.udp = {.state = LinkHealth::State::down, .detail = "bind: Address already in use"};
    EXPECT_THAT(advices(cardOf(published)), ElementsAre(Pair(3, HasSubstr("End the program that has the port"))));
}

TEST(SetUpCard, KeepsAClosedPortInSight) {
    PublishedState published = everythingWorks();
    published.health.udp = {.state = LinkHealth::State::down, .detail = "bind: Address already in use"};
    EXPECT_EQ(cardOf(published).rows[3].state, CheckState::wrong);
    EXPECT_THAT(cardOf(published).rows[3].text, HasSubstr("could not be opened (bind: Address already in use)"));
}

class SetUpWatchTest : public testing::Test {
protected:
    void show(const PublishedState& published) { watch.look(published); }

    VirtualRuntime runtime;
    int appeared = 0;
    SetUpWatch watch{runtime, [this] { ++appeared; }};
};

TEST_F(SetUpWatchTest, ShowsTheCardUntilEverythingHasWorkedOnce) {
    EXPECT_TRUE(watch.showsCard());
    PublishedState published = everythingWorks();
    published.iosConnected = false;
    show(published);
    EXPECT_TRUE(watch.showsCard());
    show(everythingWorks());
    EXPECT_FALSE(watch.showsCard());
}

TEST_F(SetUpWatchTest, DoesNotMissAPhoneThatWasPutAway) {
    show(everythingWorks());
    PublishedState published = everythingWorks();
    published.iosConnected = false;
    show(published);
    runtime.runFor(60s);
    EXPECT_FALSE(watch.showsCard());
}

TEST_F(SetUpWatchTest, BringsTheCardBackWhenSomethingStaysBroken) {
    show(everythingWorks());
    PublishedState broken = everythingWorks();
    broken.health.midi.state = LinkHealth::State::down;
    show(broken);
    runtime.runFor(9s);
    show(broken);
    EXPECT_FALSE(watch.showsCard());
    runtime.runFor(1100ms);
    EXPECT_TRUE(watch.showsCard());
    EXPECT_EQ(appeared, 1);
    show(everythingWorks());
    EXPECT_FALSE(watch.showsCard());
}

TEST_F(SetUpWatchTest, IgnoresShortBreaks) {
    show(everythingWorks());
    PublishedState broken = everythingWorks();
    broken.huiConnected = false;
    for (int i = 0; i < 5; ++i) {
        show(broken);
        runtime.runFor(8s);
        show(everythingWorks());
        runtime.runFor(1s);
    }
    EXPECT_FALSE(watch.showsCard());
    EXPECT_EQ(appeared, 0);
}

} // namespace
} // namespace lumbrine
