#include "tests/simulated_scripting/scripting_bench.h"

#include <algorithm>

namespace lumbrine {
namespace {

using testing::HasSubstr;

std::vector<std::string> names(const std::vector<PTSLTrack>& tracks) {
    std::vector<std::string> list;
    for (const PTSLTrack& track : tracks)
        list.push_back(track.name);
    return list;
}

std::vector<std::string> names(const SimulatedSession& session) {
    std::vector<std::string> list;
    for (const SimulatedTrack& track : session.tracks())
        list.push_back(track.name);
    return list;
}

TEST_F(ScriptingTest, ListsTheSession) {
    start({}, 40, {.folders = 1});
    ASSERT_EQ(list(), "done");
    EXPECT_EQ(names(tracks), names(proTools->session()));
    EXPECT_EQ(tracks[0].color, 0xD94C3DU);
    EXPECT_EQ(tracks[1].index, 2);
    EXPECT_TRUE(tracks[1].isHidden); // by the folder
    EXPECT_FALSE(tracks[0].isHidden);
    const auto shown = std::ranges::count(tracks, false, &PTSLTrack::isHidden);
    EXPECT_EQ(static_cast<std::size_t>(shown), proTools->session().shownTracks().size());
}

TEST_F(ScriptingTest, ListsAThousandTracksWithJapaneseNames) {
    start({}, 1000, {.japaneseNames = true});
    ASSERT_EQ(list(), "done");
    EXPECT_EQ(names(tracks), names(proTools->session()));
}

TEST_F(ScriptingTest, SetsAndSeesWhatOthersSet) {
    start();
    EXPECT_EQ(mute("ギターソロ", true), "done");
    EXPECT_TRUE(proTools->session().findByName("ギターソロ")->mute);
    EXPECT_EQ(run([](PTSLClient& ptsl) { return ptsl.setSolo({"Kick In", "OH"}, true); }), "done");
    EXPECT_EQ(run([](PTSLClient& ptsl) { return ptsl.setInputMonitor("OH", true); }), "done");
    proTools->edit([](SimulatedSession& session) {
        session.change(1, [](SimulatedTrack& track) { track.recordArmed = true; });
        session.rename(2, "バスドラム");
        session.select(3, false);
    });
    ASSERT_EQ(list(), "done");
    EXPECT_TRUE(tracks[0].isSoloed && tracks[0].isRecordEnabled);
    EXPECT_EQ(tracks[1].name, "バスドラム");
    EXPECT_TRUE(tracks[2].isSelected);
    EXPECT_TRUE(tracks[8].isInputMonitoringOn && tracks[8].isSoloed);
    EXPECT_TRUE(tracks[15].isMuted);
}

// More than one frame. Before its settings are acknowledged, a service takes none of more than 16,384 bytes.
TEST_F(ScriptingTest, SetsManyTracksAtOnceByTheFirstCommandOfAConnection) {
    start({.registrationOutlivesConnection = true}, 255, {.japaneseNames = true});
    ASSERT_EQ(list(), "done");
    std::vector<std::string> all;
    for (int i = 0; i < 600; ++i)
        all.push_back(tracks[static_cast<std::size_t>(i) % tracks.size()].name);
    service->goAway();
    EXPECT_NE(mute("Kick In", true), "done"); // the connection is gone
    EXPECT_EQ(run([&](PTSLClient& ptsl) { return ptsl.setSolo(all, true); }), "done");
}

TEST_F(ScriptingTest, SetsManyTracksAtOnceAfterItHasListedThem) {
    start({}, 1000, {.japaneseNames = true});
    ASSERT_EQ(list(), "done");
    const std::vector<std::string> all = names(tracks);
    EXPECT_EQ(run([&](PTSLClient& ptsl) { return ptsl.setSolo(all, true); }), "done");
    ASSERT_EQ(list(), "done");
    EXPECT_EQ(std::ranges::count(tracks, true, &PTSLTrack::isSoloed), 1000);
}

TEST_F(ScriptingTest, CountsInputMonitoringOnlyOnTheTrackItself) {
    start({.armedMonitors = true});
    proTools->edit([](SimulatedSession& session) {
        session.change(1, [](SimulatedTrack& track) { track.recordArmed = true; });
        session.change(2, [](SimulatedTrack& track) { track.recordArmed = track.inputMonitor = true; });
    });
    ASSERT_EQ(list(), "done");
    EXPECT_FALSE(tracks[0].isInputMonitoringOn);
    EXPECT_TRUE(tracks[1].isInputMonitoringOn);
}

TEST_F(ScriptingTest, ReadsEverySpellingAlike) {
    const auto listWith = [this](const ScriptingOptions& options) {
        start(options, 40, {.folders = 3});
        EXPECT_EQ(list(), "done");
        return std::exchange(tracks, {});
    };
    const std::vector<PTSLTrack> plain = listWith({});
    EXPECT_EQ(plain.size(), 40u);
    EXPECT_EQ(listWith({.attributes = AttributeSpelling::prefixedNames}), plain);
    EXPECT_EQ(listWith({.attributes = AttributeSpelling::numbers}), plain);
    EXPECT_EQ(listWith({.camelCase = true}), plain);
    EXPECT_EQ(listWith({.registrationOutlivesConnection = true}), plain);
}

TEST_F(ScriptingTest, ReadsAnEmptySessionInBothSpellings) {
    for (const bool asObject : {false, true}) {
        start({.emptyListAsObject = asObject}, 0);
        tracks.resize(1);
        EXPECT_EQ(list(), "done");
        EXPECT_TRUE(tracks.empty());
    }
}

TEST_F(ScriptingTest, GetsOnlyAsManyTracksAsAPageHolds) {
    start({.pageLimit = 500}, 1000);
    ASSERT_EQ(list(), "done");
    EXPECT_EQ(tracks.size(), 500u);
}

TEST_F(ScriptingTest, GetsACountThatIsWrongWhereThatIsChosen) {
    for (const int wrong : {-3, 3}) {
        start({.miscount = wrong});
        ASSERT_EQ(list(), "done");
        EXPECT_EQ(static_cast<int>(tracks.size()), 24 + wrong);
    }
}

TEST_F(ScriptingTest, IsRefusedByABusyHostAndServedAfterwards) {
    for (const auto& [error, number] : std::map<BusyError, std::string>{
             {BusyError::hostNotReady, "134"}, {BusyError::commandTimedOut, "137"}, {BusyError::hostIsBusy, "138"}}) {
        start({.busyError = error});
        proTools->scripting().refuseNext(2); // registering, and a second try
        EXPECT_THAT(list(), HasSubstr("\"command_error_type\":" + number));
        proTools->rest();
        EXPECT_EQ(list(), "done");
    }
}

TEST_F(ScriptingTest, IsServedOnceTheHostIsReady) {
    start({.readyAfter = seconds(10)});
    EXPECT_THAT(list(), HasSubstr("\"command_error_type\":134"));
    runtime.runFor(seconds(10));
    EXPECT_EQ(list(), "done");
}

TEST_F(ScriptingTest, LearnsThatNoSessionIsOpen) {
    start();
    proTools->edit([](SimulatedSession& session) { session.close(); });
    EXPECT_THAT(list(), HasSubstr("\"command_error_type\":106"));
    EXPECT_THAT(mute("Kick In", true), HasSubstr("\"command_error_type\":106"));
    proTools->edit([](SimulatedSession& session) { session.open(); });
    EXPECT_EQ(list(), "done");
}

TEST_F(ScriptingTest, ReportsErrorsHoweverTheirTypeIsWritten) {
    for (const auto& [spelling, type] :
         std::map<ErrorTypeSpelling, std::string>{{ErrorTypeSpelling::number, "107"},
                                                  {ErrorTypeSpelling::digits, "\"107\""},
                                                  {ErrorTypeSpelling::name, "\"PT_NoTrackFound\""}}) {
        start({.errorTypes = spelling});
        list();
        EXPECT_THAT(mute("Nobody", true),
                    HasSubstr("PTSL command failed: {\"errors\":[{\"command_error_type\":" + type));
    }
}

TEST_F(ScriptingTest, TimesOutAfterTwoTriesOfThreeSecondsWhileTheServiceStalls) {
    start();
    ASSERT_EQ(list(), "done");
    proTools->scripting().stall(seconds(60));
    EXPECT_EQ(list(), "PTSL response timed out");
    EXPECT_EQ(lasted, seconds(6));
    proTools->rest();
    EXPECT_EQ(list(), "done");
}

TEST_F(ScriptingTest, WaitsForASlowCommand) {
    start({.commandTime = seconds(2.5)});
    EXPECT_EQ(list(), "done");
    EXPECT_EQ(lasted, seconds(5)); // registering takes as long
    start({.commandTime = seconds(3.5)});
    EXPECT_EQ(list(), "PTSL response timed out");
}

TEST_F(ScriptingTest, RegistersAgainAfterARestartOfTheService) {
    start();
    ASSERT_EQ(list(), "done");
    const std::uint64_t before = proTools->scripting().arrivals();
    proTools->scripting().restart();
    EXPECT_EQ(list(), "done");
    EXPECT_EQ(proTools->scripting().arrivals() - before, 3u); // refused, registered, listed
}

} // namespace
} // namespace lumbrine
