#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_runtime.h"
#include "simulator/testing/host_bench.h"
#include "simulator/user_commands.h"

namespace lumbrine {
namespace {

class UserCommandsTest : public testing::Test {
protected:
    CommandAnswer say(std::string_view line) {
        const CommandAnswer answer = runUserCommand(proTools, line);
        runtime.runUntilIdle();
        return answer;
    }

    // Expects that the command does nothing and that its answer says why.
    void expectRefused(std::string_view line) {
        const auto before = proTools.session().tracks();
        const CommandAnswer answer = say(line);
        EXPECT_FALSE(answer.done) << line;
        EXPECT_FALSE(answer.text.empty()) << line;
        EXPECT_EQ(proTools.session().tracks(), before) << line;
    }

    SimulatedTrack track(std::size_t number) { return proTools.session().tracks().at(number - 1); }

    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    SimulatedProTools proTools{runtime, midi, {}, numberedSession(20)};
};

TEST_F(UserCommandsTest, RunTheTransport) {
    EXPECT_TRUE(say("play").done);
    EXPECT_TRUE(proTools.session().transport().playing);
    say("record");
    EXPECT_TRUE(proTools.session().transport().recording);
    say("  stop \r\n");
    EXPECT_FALSE(proTools.session().transport().playing);
}

TEST_F(UserCommandsTest, ArrangeTheScreen) {
    std::size_t alerts = 0;
    say("alert HUI is gone");
    proTools.arrangeScreen([&](SimulatedScreen& screen, TimePoint) { alerts = screen.alertCount(); });
    EXPECT_EQ(alerts, 1U);
    say("permission off");
    EXPECT_FALSE(proTools.screen().isTrusted());
    say("permission on");
    EXPECT_TRUE(proTools.screen().isTrusted());
    expectRefused("alert");
    expectRefused("permission");
    expectRefused("permission maybe");
}

TEST_F(UserCommandsTest, MoveTheBank) {
    say("bank right");
    EXPECT_EQ(proTools.snapshot().offset, 8);
    say("channel right");
    EXPECT_EQ(proTools.snapshot().offset, 9);
    say("channel left");
    say("bank left");
    EXPECT_EQ(proTools.snapshot().offset, 0);
    say("scroll 4");
    EXPECT_EQ(proTools.snapshot().offset, 3);
    expectRefused("bank up");
    expectRefused("scroll 0");
    expectRefused("scroll");
}

TEST_F(UserCommandsTest, EditTheTracks) {
    say("rename 3 Vox ダブル 2");
    EXPECT_EQ(track(3).name, "Vox ダブル 2");
    say("comment 3 U87, ルーム");
    EXPECT_EQ(track(3).comment, "U87, ルーム");
    say("comment 3");
    EXPECT_EQ(track(3).comment, "");
    expectRefused("comment 21 x");
    say("add New Track");
    EXPECT_EQ(track(21).name, "New Track");
    say("insert 1 First");
    EXPECT_EQ(track(1).name, "First");
    say("move 1 3");
    EXPECT_EQ(track(3).name, "First");
    say("remove 3");
    EXPECT_EQ(track(3).name, "Vox ダブル 2");
    say("hide 3");
    EXPECT_TRUE(track(3).hidden);
    say("hide 3");
    EXPECT_FALSE(track(3).hidden);
}

TEST_F(UserCommandsTest, SetWhatNoSurfaceShows) {
    say("monitor 2");
    say("inactive 2");
    say("color 2 12ab9f");
    EXPECT_TRUE(track(2).inputMonitor && track(2).inactive);
    EXPECT_EQ(track(2).color, "#ff12ab9f");
    expectRefused("color 2 12ab9");
    expectRefused("color 2 12ab9g");
    expectRefused("color 2");
}

TEST_F(UserCommandsTest, CloseAndOpenAFolder) {
    proTools.edit(
        [](SimulatedSession& session) { session.change(1, [](SimulatedTrack& track) { track.isFolder = true; }); });
    say("fold 1");
    EXPECT_TRUE(track(1).closed);
    say("fold 1");
    EXPECT_FALSE(track(1).closed);
    expectRefused("fold 2");
}

TEST_F(UserCommandsTest, LetTheScriptingServiceFail) {
    std::vector<ScriptingReply> replies;
    const auto check = [&] {
        ScriptingRequest request;
        request.command = 13;
        proTools.scripting().ask(request, "test", [&](const ScriptingReply& reply) { replies.push_back(reply); });
        runtime.runUntilIdle();
    };
    EXPECT_TRUE(say("script busy 1").done);
    check();
    check();
    ASSERT_EQ(replies.size(), 2u);
    EXPECT_EQ(replies[0].bodyJSON, R"({"is_host_ready":false})");
    EXPECT_EQ(replies[1].bodyJSON, R"({"is_host_ready":true})");
    EXPECT_TRUE(say("script stall 2").done);
    check();
    EXPECT_EQ(replies.size(), 2u);
    runtime.runFor(seconds(2));
    EXPECT_EQ(replies.size(), 3u);
    EXPECT_TRUE(say("script restart").done);
    expectRefused("script reset 1"); // nobody serves it by a wire
    proTools.scripting().wireFaults().use();
    EXPECT_TRUE(say("script reset 1").done);
    EXPECT_TRUE(say("script goaway 1").done);
    EXPECT_TRUE(say("script die 1").done);
    for (const WireFault fault : {WireFault::reset, WireFault::goAway, WireFault::die, WireFault::none})
        EXPECT_EQ(proTools.scripting().wireFaults().draw(), fault);
    expectRefused("script reset");
    expectRefused("script die 0");
    expectRefused("script");
    expectRefused("script dance");
    expectRefused("script busy 0");
    expectRefused("script stall -1");
    expectRefused("script restart 5");
}

TEST_F(UserCommandsTest, SetTheValuesOfATrack) {
    say("mute 2");
    say("solo 2");
    say("arm 2");
    say("trim 2");
    EXPECT_TRUE(track(2).mute && track(2).solo && track(2).recordArmed && track(2).trim);
    say("select 2");
    say("select 3");
    EXPECT_TRUE(track(3).selected);
    EXPECT_FALSE(track(2).selected);
    say("fader 2 0.5");
    EXPECT_EQ(track(2).fader.raw(), 8191);
    say("pan 2 -50 75");
    EXPECT_EQ(track(2).panLeft, -50);
    EXPECT_EQ(track(2).panRight, 75);
    say("pan 2 10");
    EXPECT_EQ(track(2).panLeft, 10);
    EXPECT_EQ(track(2).panRight, 75);
    say("auto 2 latch");
    EXPECT_EQ(track(2).automation, SimulatedTrack::Automation::latch);
    say("auto 2 off");
    EXPECT_EQ(track(2).automation, SimulatedTrack::Automation::off);
}

TEST_F(UserCommandsTest, OpenAndCloseTheSessionAndLetGoOfThePorts) {
    say("session close");
    EXPECT_FALSE(proTools.snapshot().sessionOpen);
    say("session open");
    EXPECT_TRUE(proTools.snapshot().sessionOpen);
    runtime.runFor(seconds(2.5));
    const std::uint64_t pings = proTools.snapshot().surfaces[0].pingsSent;
    EXPECT_GT(pings, 0u);
    say("release");
    runtime.runFor(seconds(5));
    EXPECT_EQ(proTools.snapshot().surfaces[0].pingsSent, pings);
    say("grab");
    EXPECT_EQ(proTools.snapshot().surfaces[0].pingsSent, pings + 1);
    say("stick 3");
    runtime.runFor(seconds(2.9));
    EXPECT_EQ(proTools.snapshot().surfaces[0].pingsSent, pings + 1);
    runtime.runFor(seconds(0.2));
    say("silence 1 10");
    const std::uint64_t before = proTools.snapshot().surfaces[0].pingsSent;
    runtime.runFor(seconds(9));
    EXPECT_EQ(proTools.snapshot().surfaces[0].pingsSent, before);
}

TEST_F(UserCommandsTest, RefuseWhatTheyDoNotUnderstand) {
    for (const std::string_view line :
         {"fly",          "Play",         "play now",    "rename",      "rename 3",    "rename 0 X", "rename 21 X",
          "rename x Y",   "add",          "insert",      "insert 0 X",  "insert 1",    "remove",     "remove 99",
          "remove -1",    "move 1",       "move 1 0",    "move 1 21",   "hide",        "mute 1.5",   "fader 1",
          "fader 1 1.01", "fader 1 -0.1", "fader 1 nan", "fader 1 x",   "pan 1",       "pan 1 101",  "pan 1 0 x",
          "auto 1",       "auto 1 trim",  "silence 1",   "silence 2 1", "silence 0 1", "stick",      "stick -1"})
        expectRefused(line);
}

TEST_F(UserCommandsTest, PassOverEmptyLinesAndRemarks) {
    for (const std::string_view line : {"", "   ", "# play", "\n"}) {
        const CommandAnswer answer = say(line);
        EXPECT_TRUE(answer.done && answer.text.empty() && !answer.quit);
    }
    EXPECT_FALSE(proTools.session().transport().playing);
}

TEST_F(UserCommandsTest, PrintTheTracksTheCommandsAndTheEnd) {
    say("hide 2");
    const std::string list = say("tracks").text;
    EXPECT_THAT(list, testing::StartsWith("   1  0.750  ----  mono    T01\n"));
    EXPECT_THAT(list, testing::HasSubstr("T02  (hidden)\n"));
    EXPECT_THAT(list, testing::EndsWith("T20"));
    EXPECT_EQ(say("help").text, userCommandHelp());
    EXPECT_THAT(userCommandHelp(), testing::HasSubstr("\nrename TRACK NAME                       give a track"));
    EXPECT_TRUE(say("quit").quit);
    EXPECT_FALSE(say("help").quit);
}

TEST_F(UserCommandsTest, ExchangeTheSessionForAnotherOrForOneOfTheSameTemplate) {
    say("session exchange 12");
    EXPECT_FALSE(proTools.snapshot().sessionOpen);
    runtime.runFor(seconds(3));
    EXPECT_TRUE(proTools.snapshot().sessionOpen);
    EXPECT_EQ(proTools.session().tracks().size(), 12u);
    const std::vector<SimulatedTrack> before = proTools.session().tracks();
    say("session template");
    runtime.runFor(seconds(3));
    const std::vector<SimulatedTrack> after = proTools.session().tracks();
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after[3].name, before[3].name);
    EXPECT_NE(after[3].id, before[3].id);
}

TEST_F(UserCommandsTest, OpenAndCloseADialog) {
    say("dialog open The disk is full");
    EXPECT_TRUE(proTools.snapshot().dialogOpen);
    say("dialog close");
    EXPECT_FALSE(proTools.snapshot().dialogOpen);
}

TEST_F(UserCommandsTest, RefuseWhatSessionsAndDialogsCannotDo) {
    for (const char* const line : {"session", "session leave", "session exchange", "session exchange -1",
                                   "session save", "dialog", "dialog open", "dialog close now"})
        EXPECT_FALSE(runUserCommand(proTools, line).done) << line;
}

} // namespace
} // namespace lumbrine
