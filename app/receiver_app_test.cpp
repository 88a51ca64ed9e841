// What the user's actions do, and that the window's comings and goings start nothing twice.
#include "app/receiver_app.h"
#include "app/testing/fake_host_names.h"
#include "app/testing/fake_login_service.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class ReceiverAppTest : public ModelTest {
protected:
    ReceiverAppTest() {
        app.connect(
            {.openWindow = [this] { ++opened; }, .refresh = [this] { ++refreshes; }, .quit = [this] { ++quits; }});
    }

    const MenuItem loginToggle() const {
        const StatusMenu menu = app.menu();
        return *std::ranges::find(menu.items, ScreenAction::launchAtLogin, &MenuItem::action);
    }

    FakeLoginService service;
    std::vector<std::string> printed;
    LoginItem item{service, Bilingual(false), [this](const std::string& line) { printed.push_back(line); }};
    FakeHostNames hosts;
    ReceiverApp app{bench.model, item, Bilingual(false), {.runtime = world.runtime, .hosts = &hosts, .timeOfDay = [] {
                                                              return "14:03:59";
                                                          }}};
    int opened = 0;
    int refreshes = 0;
    int quits = 0;
};

TEST_F(ReceiverAppTest, StartsTheModelWhenTheWindowAppears) {
    EXPECT_THAT(bench.computer.published, IsEmpty());
    app.windowAppeared();
    EXPECT_THAT(bench.computer.published, testing::SizeIs(1));
    EXPECT_THAT(app.logRows(), testing::SizeIs(3));
}

TEST_F(ReceiverAppTest, ShowsThePhoneByTheNameThatItHasOnTheNetwork) {
    app.windowAppeared();
    bench.computer.services.at(0).onChange("Studio");
    const auto phone = bench.phone("192.168.1.7");
    phone->send({0x01, 0x00});
    bench.run(1s);
    ASSERT_THAT(hosts.asked, ElementsAre("192.168.1.7"));
    EXPECT_EQ(app.view().client.detail, "192.168.1.7");
    hosts.answer("Annas-iPhone");
    bench.run(10ms);
    EXPECT_EQ(app.view().client.detail, "Annas-iPhone");
    EXPECT_EQ(app.menu().items[1].title, "iPhone / iPad: Annas-iPhone");
    EXPECT_EQ(app.card().rows[2].text, "Annas-iPhone is connected.");
    EXPECT_EQ(app.card().rows[2].spoken, "Done: Annas-iPhone is connected.");
}

TEST_F(ReceiverAppTest, StartsNothingAgainWhenTheWindowIsReopened) {
    app.windowAppeared();
    bench.run(1s);
    bench.mark();
    app.windowAppeared();
    bench.run(1s);
    EXPECT_THAT(bench.computer.published, testing::SizeIs(1));
    EXPECT_THAT(app.logRows(), testing::SizeIs(3));
    EXPECT_THAT(bench.surfaceA.presence.takeBytes(), IsEmpty());
}

TEST_F(ReceiverAppTest, PressesTheMatchingBankButton) {
    app.windowAppeared();
    bench.run(1s);
    const std::vector<std::pair<ScreenAction, std::string>> presses{{ScreenAction::channelBack, "0ms B0 2F 40"},
                                                                    {ScreenAction::bankBack, "0ms B0 2F 41"},
                                                                    {ScreenAction::channelForward, "0ms B0 2F 42"},
                                                                    {ScreenAction::bankForward, "0ms B0 2F 43"}};
    for (const auto& [action, bytes] : presses) {
        bench.mark();
        app.perform(action);
        bench.run(10ms);
        EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("0ms B0 0F 0A", bytes));
        bench.run(1200ms); // Pro Tools may need as long to show what came of it
    }
}

TEST_F(ReceiverAppTest, RunsTheTestSweep) {
    app.perform(ScreenAction::testSweep);
    EXPECT_THAT(bench.takeLines(), ElementsAre("▶ Test: sending track 1 sweep"));
}

TEST_F(ReceiverAppTest, ReconnectsToProTools) {
    app.perform(ScreenAction::reconnect);
    EXPECT_THAT(bench.takeLines(), ElementsAre(testing::StartsWith("→ Opening and closing PT's Peripherals dialog")));
}

TEST_F(ReceiverAppTest, DoesWhatNeedsNoShellBeforeOneIsConnected) {
    ReceiverApp shellless(bench.model, item, Bilingual(false), {.runtime = world.runtime});
    for (const ScreenAction action :
         {ScreenAction::showWindow, ScreenAction::launchAtLogin, ScreenAction::quit, ScreenAction::testSweep})
        shellless.perform(action);
    EXPECT_EQ(service.changes, 1);
    EXPECT_THAT(bench.takeLines(), ElementsAre("▶ Test: sending track 1 sweep"));
}

TEST_F(ReceiverAppTest, LeavesWindowsAndTheEndToTheShell) {
    app.perform(ScreenAction::showWindow);
    EXPECT_EQ(opened, 1);
    app.perform(ScreenAction::quit);
    EXPECT_EQ(quits, 1);
    app.perform(ScreenAction::none);
    EXPECT_EQ(opened + quits, 2);
}

TEST_F(ReceiverAppTest, TellsTheShellAboutChanges) {
    app.tell("a line");
    EXPECT_EQ(refreshes, 1);
    EXPECT_THAT(app.logRows(), ElementsAre(LogRow{1, "14:03:59", "a line"}));
}

TEST_F(ReceiverAppTest, ShowsAddressesInTheLogAsPeopleWriteThem) {
    app.tell("iOS connected: ::ffff:192.168.1.7");
    EXPECT_THAT(app.logRows(), ElementsAre(LogRow{1, "14:03:59", "iOS connected: 192.168.1.7"}));
    EXPECT_THAT(bench.takeLines(), ElementsAre("iOS connected: ::ffff:192.168.1.7"));
}

TEST_F(ReceiverAppTest, ShowsTheStateOfTheModel) {
    EXPECT_EQ(app.view().proTools.detail, "Waiting");
    bench.state().published.huiConnected = true;
    EXPECT_EQ(app.view().proTools.detail, "Connected · ping 0");
    EXPECT_EQ(app.menu().opacity, 1.0);
}

TEST_F(ReceiverAppTest, SwitchesLaunchingAtLogin) {
    EXPECT_FALSE(loginToggle().on);
    app.perform(ScreenAction::launchAtLogin);
    EXPECT_TRUE(service.enabled);
    EXPECT_TRUE(loginToggle().on);
    app.perform(ScreenAction::launchAtLogin);
    EXPECT_FALSE(service.enabled);
    EXPECT_FALSE(loginToggle().on);
    EXPECT_EQ(refreshes, 2);
    EXPECT_THAT(printed, IsEmpty());
}

TEST_F(ReceiverAppTest, BeginsWithTheStateOfTheLoginService) {
    service.enabled = true;
    const ReceiverApp other(bench.model, item, Bilingual(false), {.runtime = world.runtime});
    EXPECT_TRUE(other.menu().items[5].on);
}

TEST_F(ReceiverAppTest, FallsBackToTheRealStateWhenTheSwitchFails) {
    service.failure = "Read-only file system";
    app.perform(ScreenAction::launchAtLogin);
    EXPECT_FALSE(loginToggle().on);
    EXPECT_EQ(refreshes, 1); // so that the shell shows it
    EXPECT_THAT(printed, ElementsAre("Failed to toggle login item: Read-only file system"));
    EXPECT_THAT(app.logRows(), IsEmpty());
}

TEST_F(ReceiverAppTest, KeepsShowingTheLastStateWhenTheModelHasGone) {
    bench.state().published.localIP = "192.168.1.2";
    app.tell("the last line");
    EXPECT_EQ(app.release(), bench.model);
    EXPECT_EQ(app.release(), nullptr);
    EXPECT_EQ(app.view().address.address, "192.168.1.2");
    EXPECT_THAT(app.logRows(), ElementsAre(LogRow{1, "14:03:59", "the last line"}));
    for (const ScreenAction action : {ScreenAction::reconnect, ScreenAction::bankBack, ScreenAction::testSweep,
                                      ScreenAction::showWindow, ScreenAction::launchAtLogin, ScreenAction::quit})
        app.perform(action);
    app.windowAppeared();
    app.tell("nobody writes this down");
    app.connect({.openWindow = [this] { ++opened; }, .refresh = [] {}, .quit = [this] { ++quits; }});
    app.perform(ScreenAction::showWindow);
    EXPECT_THAT(app.logRows(), ElementsAre(LogRow{1, "14:03:59", "the last line"}));
    EXPECT_EQ(opened + quits + service.changes, 0);
    refreshes = 0;
    bench.model->appendLog("nobody looks");
    EXPECT_EQ(refreshes, 0);
}

TEST_F(ReceiverAppTest, IsToldOfNoChangeOnceItHasGone) {
    ReceiverApp{bench.model, item, Bilingual(false), {.runtime = world.runtime}}.connect(
        {.openWindow = {}, .refresh = [this] { ++refreshes; }, .quit = {}});
    refreshes = 0;
    bench.model->appendLog("nobody looks");
    EXPECT_EQ(refreshes, 0);
}

} // namespace
} // namespace lumbrine
