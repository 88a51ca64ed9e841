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
        EXPECT_NE(read.attribute, "AXSelected"); // only the track list has it
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

TEST_F(ScreenNamesTest, AreReadOnTheQueueOfTheServiceWhichThenGoesOn) {
    windows.listTracks({"Kick Drum", "Lead Vocals", "Backing Vocals"});
    refuse(trackListCommand);
    bench.screen.watchReads([this](const MemoryScreen::Read&) {
        EXPECT_FALSE(world.runtime.onMain());
        world.runtime.sleepFor(10ms);
        return true;
    });
    bench.parts().metadata.refreshFullNames();
    bench.run(50ms);
    const std::size_t requests = service.requests.size();
    bench.parts().metadata.refreshFullNames(); // the first one still reads
    bench.run(9s);
    EXPECT_EQ(service.requests.size(), requests);
    EXPECT_THAT(namesOf(published.session), testing::SizeIs(3));
    bench.screen.watchReads([](const MemoryScreen::Read&) { return true; });
    bench.parts().metadata.refreshFullNames();
    bench.run(1s);
    EXPECT_GT(service.requests.size(), requests);
}

} // namespace
} // namespace lumbrine
