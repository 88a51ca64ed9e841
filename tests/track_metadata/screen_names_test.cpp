// Names from the screen while the scripting service does not answer.
#include "model/testing/session_columns.h"
#include "tests/track_metadata/metadata_test.h"
#include "tests/track_metadata/shown_windows.h"

namespace lumbrine {
namespace {

class ScreenNamesTest : public MetadataTest {
protected:
    explicit ScreenNamesTest(bool japanese = false) : MetadataTest(japanese) {
        bench.state().scripting.ptslWarned = true;
    }
    void TearDown() override { EXPECT_EQ(bench.screen.liveHandles(), 0); }

    ShownWindows windows{bench.screen};
};

class JapaneseScreenNamesTest : public ScreenNamesTest {
protected:
    JapaneseScreenNamesTest() : ScreenNamesTest(true) {}
};

TEST_F(ScreenNamesTest, AreTakenWhenTheServiceFails) {
    windows.listTracks({"1. Kick Drum", "Lead Vocals", "Backing Vocals"});
    refuse(trackListCommand);
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ Got 3 track names (full names via AX)"));
}

TEST_F(ScreenNamesTest, AreTakenWhenTheServiceIsNotThere) {
    windows.listTracks({"Kick Drum", "Lead Vocals", "Backing Vocals"});
    bench.streams.stopListening(31416);
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
}

TEST_F(JapaneseScreenNamesTest, AreLoggedInJapanese) {
    windows.listTracks({"1。 ドラム", "ボーカル", "コーラス"});
    refuse(trackListCommand);
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("ドラム", "ボーカル", "コーラス"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ トラック名を 3 件取得（フルネーム表示・AX）"));
}

TEST_F(ScreenNamesTest, ComeTenSecondsAfterTheServiceWasLost) {
    serve(R"({"name":"A","color":"#102030","track_attributes":{"is_muted":true}},{"name":"B"},{"name":"C"})");
    refresh();
    bench.takeLines();
    windows.listTracks({"A", "B", "C too"});
    refuse(trackListCommand, 138);
    refresh();
    bench.run(9'999ms);
    refresh();
    EXPECT_EQ(published.session.tracks[0].color, 0x102030U);
    EXPECT_TRUE(published.session.tracks[0].mute);
    EXPECT_EQ(published.session.tracks[2].name, "C");
    EXPECT_THAT(bench.takeLines(), IsEmpty());
    bench.run(1ms);
    EXPECT_EQ(published.session.tracks[0].color, std::nullopt);
    EXPECT_EQ(published.session.tracks[2].name, "C too");
}

TEST_F(ScreenNamesTest, DoNotComeWhenTheServiceIsBackInTime) {
    serve(R"({"name":"A","color":"#102030"},{"name":"B"},{"name":"C"})");
    refresh();
    windows.listTracks({"A", "B", "C too"});
    for (int i = 0; i < 3; ++i) {
        refuse(trackListCommand, 138);
        refresh();
        bench.run(9'999ms);
        serve(R"({"name":"A","color":"#102030"},{"name":"B"},{"name":"C"})");
        refresh();
    }
    bench.run(1s);
    EXPECT_EQ(published.session.tracks[0].color, 0x102030U);
    EXPECT_EQ(published.session.tracks[2].name, "C");
}

// An answer that is no result counts like none.
TEST_F(ScreenNamesTest, DoNotComeWhileASessionOpens) {
    serve(R"({"name":"A","color":"#102030"},{"name":"B"},{"name":"C"})");
    refresh();
    bench.takeLines();
    windows.listTracks({"A", "B", "C too"});
    for (const Bytes& none : {service::failure("", 2), service::reply("")}) {
        service.answers[trackListCommand] = [none](const service::Request&) { return none; };
        refresh();
        EXPECT_EQ(published.session.tracks[0].color, 0x102030U);
        EXPECT_THAT(bench.takeLines(), IsEmpty());
    }
}

TEST_F(ScreenNamesTest, ComeWithNeutralColoursAndStates) {
    serve(R"({"name":"A","color":"#102030","track_attributes":{"is_muted":true,"is_soloed":true,)"
          R"("is_record_enabled":true,"is_input_monitoring_on":"SetExplicitly"}},{"name":"B"},{"name":"C"})");
    refresh();
    ASSERT_EQ(column(bench.state().published.session, &Track::mute), (std::vector<bool>{true, false, false}));

    windows.listTracks({"A", "B", "C"});
    refuse(trackListCommand);
    bench.state().fullTableDirty = false;
    refresh();
    bench.run(10s);
    EXPECT_THAT(column(published.session, &Track::color), testing::Each(std::nullopt));
    EXPECT_THAT(column(published.session, &Track::inputMonitor), testing::Each(false));
    EXPECT_THAT(column(bench.state().published.session, &Track::mute), testing::Each(false));
    EXPECT_THAT(column(bench.state().published.session, &Track::solo), testing::Each(false));
    EXPECT_THAT(column(bench.state().published.session, &Track::record), testing::Each(false));
    EXPECT_TRUE(bench.state().fullTableDirty);
}

TEST_F(ScreenNamesTest, GiveWayToTheServiceWhenItIsBack) {
    windows.listTracks({"Kick Drum", "Lead Vox", "Backing Vocals"});
    refuse(trackListCommand);
    refresh();
    serve(threeTracks);
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
    EXPECT_THAT(column(published.session, &Track::color), ElementsAre(0x102030U, std::nullopt, std::nullopt));
    EXPECT_THAT(bench.takeLines(),
                ElementsAre("✓ Got 3 track names (full names via AX)", "✓ Got 3 track names (full names via PTSL)",
                            "✓ Connected to Pro Tools' official API (track names and colors)"));
}

TEST_F(ScreenNamesTest, AreNotReadWhileTheServiceAnswers) {
    windows.listTracks({"X", "Y", "Z"});
    serve(threeTracks);
    bench.screen.watchReads([](const MemoryScreen::Read& read) {
        EXPECT_FALSE(read.asksFor("AXSelected")); // only the track list has it
        return true;
    });
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
}

TEST_F(ScreenNamesTest, NeedTheUsersPermissionAndDoNotAskForIt) {
    windows.listTracks({"Kick Drum", "Lead Vocals", "Backing Vocals"});
    bench.screen.setTrusted(false);
    refuse(trackListCommand);
    refresh();
    EXPECT_THAT(namesOf(published.session), IsEmpty());
    EXPECT_EQ(bench.screen.prompts(), 0);
    EXPECT_EQ(bench.screen.reads(), 0U);
    bench.screen.setTrusted(true);
    refresh();
    EXPECT_THAT(namesOf(published.session), testing::SizeIs(3));
}

TEST_F(ScreenNamesTest, AreNotTakenWhenTheyAreNotAsManyAsTheMapHas) {
    serve(threeTracks);
    refresh();
    bench.takeLines();
    windows.listTracks({"Kick Drum", "Lead Vocals"});
    refuse(trackListCommand);
    refresh();
    bench.run(10s);
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("Full names: count mismatch (2 / HUI 3) → keeping 4-char names"));
}

TEST_F(ScreenNamesTest, StayAsTheyWereWhenNothingCanBeRead) {
    windows.listTracks({"Kick Drum", "Lead Vocals", "Backing Vocals"});
    refuse(trackListCommand);
    refresh();
    bench.takeLines();
    bench.screen.quit(77);
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

TEST_F(ScreenNamesTest, AreReadWhileTheServiceGoesOn) {
    windows.listTracks({"Kick Drum", "Lead Vocals", "Backing Vocals"});
    refuse(trackListCommand);
    bench.screen.answerAfter(world.runtime, 900ms);
    bench.parts().metadata.refreshFullNames();
    bench.run(50ms);
    const std::size_t requests = service.requests.size();
    bench.parts().metadata.refreshFullNames(); // the screen is being read
    bench.run(50ms);
    EXPECT_EQ(service.requests.size(), requests + 1);
    bench.run(1min);
    EXPECT_THAT(namesOf(published.session), IsEmpty()); // 14 messages are more than 10 s
    bench.screen.answerAfter(world.runtime, 500ms);
    bench.run(4min);
    EXPECT_THAT(namesOf(published.session), testing::SizeIs(3));
}

TEST_F(ScreenNamesTest, ThatComeWhenTheServiceIsBackAreDropped) {
    windows.listTracks({"A", "B", "C"});
    refuse(trackListCommand);
    bench.screen.answerAfter(world.runtime, 100ms);
    bench.parts().metadata.refreshFullNames();
    bench.run(50ms);
    serve(threeTracks);
    bench.parts().metadata.refreshFullNames();
    bench.run(10s);
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
}

// How long Pro Tools is asked, and how long it is left alone.
class ScreenLoadTest : public ScreenNamesTest {
protected:
    ScreenLoadTest() {
        windows.listTracks({"Kick Drum", "Lead Vocals", "Backing Vocals"});
        refuse(trackListCommand);
        bench.screen.watchReads([this](const MemoryScreen::Read& read) {
            if (read.asksFor("AXWindows")) begun.push_back(sinceStart());
            return true;
        });
    }

    std::chrono::milliseconds sinceStart() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(world.runtime.now() - start);
    }

    // Asks for names and comments every second.
    void askFor(Duration duration) {
        const auto timer = world.runtime.repeatOnMain(1s, [this] {
            bench.parts().metadata.refreshFullNames();
            bench.parts().metadata.refreshComments();
        });
        bench.run(duration);
    }

    const TimePoint start = world.runtime.now();
    std::vector<std::chrono::milliseconds> begun;
};

TEST_F(ScreenLoadTest, IsAtMostATwentiethOfTheTimeAndShared) {
    bench.screen.answerAfter(world.runtime, 10ms);
    askFor(10s);
    // Names need 14 messages, comments without a Mix window 3.
    EXPECT_THAT(begun, ElementsAre(1000ms, 3940ms, 4570ms, 7510ms, 8140ms));
}

TEST_F(ScreenLoadTest, IsOneMessageIn21SecondsWhileProToolsHangs) {
    bench.screen.stopAnswering(world.runtime);
    askFor(90s);
    EXPECT_THAT(begun, ElementsAre(1000ms, 22000ms, 43000ms, 64000ms, 85000ms));
    EXPECT_EQ(bench.screen.reads(), 5U);
}

TEST_F(ScreenLoadTest, IsOneMessageIn30SecondsWhenTheSystemRefusesAndThatIsToldOnce) {
    bench.screen.setRefusing(true);
    askFor(70s);
    EXPECT_THAT(begun, ElementsAre(1000ms, 31000ms, 61000ms));
    const Lines lines = bench.takeLines();
    EXPECT_THAT(lines, ElementsAre(testing::StartsWith("⚠️ The system does not let Lumbrine read Pro Tools' windows")));
    bench.screen.setRefusing(false);
    askFor(30s);
    EXPECT_THAT(namesOf(published.session), testing::SizeIs(3));
}

} // namespace
} // namespace lumbrine
