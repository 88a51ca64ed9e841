// One session told in order: where names, colours and comments come from, and how lost MIDI ports come back.
#include "model/testing/session_columns.h"
#include "tests/simulation/source_checkers.h"
#include "tests/simulation/world.h"

namespace lumbrine::simulation {
namespace {

Scenario quietStudio() {
    Scenario scenario;
    scenario.tracks = 24;
    scenario.namesDiffer = true;
    scenario.sources = {.scripting = true, .screen = true};
    scenario.host.surfaces = 2;
    scenario.host.scripting.downTime = seconds(20);
    return scenario;
}

class SourcesTest : public testing::Test {
protected:
    SourcesTest() {
        EXPECT_TRUE(comesTrue(seconds(60), [this] { return wrong().empty(); })) << wrong();
    }
    void TearDown() override { EXPECT_EQ(world.proTools->screen().liveHandles(), 0); }

    template <typename Condition>
    bool comesTrue(Duration limit, Condition condition) {
        for (const TimePoint end = world.runtime.now() + limit; world.runtime.now() < end;) {
            if (condition()) return true;
            world.runtime.runFor(seconds(0.1));
        }
        return condition();
    }

    std::string wrong() { return wrongWithSources(scenario.sources, world.state(), *world.proTools); }
    const PublishedState& published() { return world.model->published(); }
    HostTrack track(std::size_t index) { return tracksOf(*world.proTools).at(index); }

    void edit(std::size_t index, const std::function<void(SimulatedTrack&)>& change) {
        const int id = track(index).id;
        world.proTools->edit([&](SimulatedSession& session) { session.change(id, change); });
    }

    long timesLogged(const std::string& text) {
        return std::ranges::count_if(world.watch->record().lines,
                                     [&](const auto& line) { return line.second.find(text) != std::string::npos; });
    }
    bool hasLogged(const std::string& text) { return timesLogged(text) > 0; }

    // Of the client's row of that track; nothing while it has none.
    std::optional<std::string> commentAtThePhone(std::uint16_t index) {
        const auto& session = world.phone().picture().session;
        const auto found = session.find(index);
        if (found == session.end() || !found->second.row) return std::nullopt;
        return found->second.row->comment;
    }

    const Scenario scenario = quietStudio();
    World world{scenario};
};

TEST_F(SourcesTest, NamesComeFromTheScreenWhileTheServiceIsDownAndColoursGoUntilItIsBack) {
    EXPECT_TRUE(hasLogged("(full names via PTSL)"));
    EXPECT_FALSE(hasLogged("(full names via AX)"));
    EXPECT_NE(column(published().session, &Track::color).at(2), std::nullopt);

    const HostTrack before = track(2);
    world.service->die();
    world.proTools->edit([&](SimulatedSession& session) { session.rename(before.id, before.name + " double"); });
    const auto hasColors = [this] {
        return std::ranges::any_of(column(published().session, &Track::color),
                                   [](const auto& color) { return color.has_value(); });
    };
    world.runtime.runFor(seconds(9));
    EXPECT_FALSE(hasLogged("(full names via AX)"));
    EXPECT_TRUE(hasColors()); // it may be back in a moment
    EXPECT_TRUE(comesTrue(seconds(8), [&] { return hasLogged("(full names via AX)"); }));
    EXPECT_EQ(namesOf(published().session).at(2), before.name + " double");
    EXPECT_FALSE(hasColors());
    EXPECT_EQ(world.phone().picture().at(*Strip::of(2)).color, std::nullopt);
    EXPECT_TRUE(hasLogged("names are read from the screen, no colors shown"));

    EXPECT_TRUE(comesTrue(seconds(30), [this] { return wrong().empty(); })) << wrong();
    EXPECT_TRUE(hasColors());
    world.runtime.runFor(seconds(0.1));
    EXPECT_EQ(world.phone().picture().at(*Strip::of(2)).color, track(2).color);
}

TEST_F(SourcesTest, TheLogTellsOfTheFirstLossOfTheServiceAndOfEachReturn) {
    const std::string lost = "Track colors: unavailable";
    const std::string back = "✓ Connected to Pro Tools' official API";
    EXPECT_EQ(timesLogged(lost), 0);
    EXPECT_EQ(timesLogged(back), 1);
    long returns = 1;
    const std::vector<std::function<void()>> losses{[this] { world.service->die(); },
                                                    [this] { world.proTools->scripting().stall(seconds(20)); },
                                                    [this] { world.service->die(); }};
    for (const auto& lose : losses) {
        lose();
        EXPECT_TRUE(comesTrue(seconds(15), [this] { return !world.state().scripting.ptslOK; }));
        EXPECT_TRUE(comesTrue(seconds(40), [this] { return world.state().scripting.ptslOK; }));
        world.runtime.runFor(seconds(5));
        EXPECT_EQ(timesLogged(lost), 1);
        EXPECT_EQ(timesLogged(back), ++returns);
    }

    // If the service no longer knows the session, the receiver registers again. That does not count as a loss.
    world.proTools->scripting().restart();
    world.runtime.runFor(seconds(10));
    EXPECT_TRUE(world.state().scripting.ptslOK);
    EXPECT_EQ(timesLogged(lost), 1);
    EXPECT_EQ(timesLogged(back), returns);
}

TEST_F(SourcesTest, CommentsReachTheClient) {
    world.runtime.runFor(seconds(3));
    EXPECT_EQ(commentAtThePhone(4), track(4).comment);
    edit(4, [](SimulatedTrack& changed) { changed.comment = "ルームマイク"; });
    EXPECT_TRUE(comesTrue(seconds(14), [this] { return commentAtThePhone(4) == "ルームマイク"; }));
}

TEST_F(SourcesTest, CommentsStayAsTheyWereWhileTheScreenMayNotBeRead) {
    world.runtime.runFor(seconds(3));
    const std::string before = track(4).comment;
    world.proTools->screen().setTrusted(false);
    edit(4, [](SimulatedTrack& changed) { changed.comment = "new"; });
    EXPECT_FALSE(comesTrue(seconds(30), [&] { return commentAtThePhone(4) != before; }));
    EXPECT_EQ(world.proTools->screen().prompts(), 0);
    world.proTools->screen().setTrusted(true);
    EXPECT_TRUE(comesTrue(seconds(14), [this] { return commentAtThePhone(4) == "new"; }));
}

TEST_F(SourcesTest, CommentsGoWithTheirTracks) {
    const HostTrack moved = track(4);
    world.proTools->edit([&](SimulatedSession& session) { session.move(moved.id, 0); });
    world.phone().send(remote::recalibrateCommand());
    EXPECT_TRUE(comesTrue(seconds(60), [&] {
        const Session& session = published().session;
        return !session.empty() && session.tracks.front().name == moved.name && wrong().empty();
    })) << wrong();
    EXPECT_TRUE(comesTrue(seconds(3), [&] { return commentAtThePhone(0) == moved.comment; }));
}

TEST_F(SourcesTest, LostPortsComeBackByTheReconnectAction) {
    world.proTools->releasePorts();
    EXPECT_TRUE(comesTrue(seconds(5), [this] { return !published().huiConnected; }));
    world.runtime.runFor(seconds(30));
    EXPECT_FALSE(published().huiConnected);
    world.model->reconnectToPT();
    EXPECT_TRUE(comesTrue(seconds(5), [this] { return published().huiConnected; }));
    world.runtime.runFor(seconds(10));
    EXPECT_TRUE(hasLogged("✓ Opened and closed the Peripherals dialog"));
    EXPECT_FALSE(hasLogged("Still not connected"));
    EXPECT_TRUE(comesTrue(seconds(60), [this] { return wrong().empty(); })) << wrong();
}

// ---- A service whose list has a track too many, or one too few

std::string mismatchWith(int listed) {
    const std::string count = std::to_string(listed);
    return "Full names: count mismatch (" + count + ", " + count + " / HUI 24)";
}

TEST(MiscountingService, GivesNoTrackANameByItsPlaceInTheList) {
    for (const int miscount : {-1, 1}) {
        Scenario scenario = quietStudio();
        scenario.sources.screen = false;
        scenario.host.scripting.miscount = miscount;
        World world(scenario);
        world.proTools->edit([](SimulatedSession& session) {
            session.changeAll([](SimulatedTrack& track) { track.hidden = track.inactive = false; });
        });
        world.runtime.runFor(seconds(60));
        ASSERT_EQ(tracksOf(*world.proTools).size(), 24U);
        const PublishedState& published = world.model->published();
        EXPECT_EQ(displaysOf(published.session), displaysOf(tracksOf(*world.proTools)));
        EXPECT_THAT(namesOf(published.session), testing::IsEmpty());
        EXPECT_THAT(column(published.session, &Track::color), testing::Each(testing::Eq(std::nullopt)));
        for (const auto& [index, track] : world.phone().picture().session)
            EXPECT_EQ(track.row.value_or(remote::TrackRow{}).name, displaysOf(published.session).at(index));

        const std::string mismatch = mismatchWith(scenario.tracks + miscount);
        const auto tellsIt = [&](const auto& line) { return line.second.starts_with(mismatch); };
        EXPECT_TRUE(std::ranges::any_of(world.watch->record().lines, tellsIt));
        EXPECT_TRUE(world.state().scripting.ptslOK);
    }
}

} // namespace
} // namespace lumbrine::simulation
