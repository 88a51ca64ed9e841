// Which track list is taken for the map, and what of it.
#include "model/testing/session_columns.h"
#include "tests/track_metadata/metadata_test.h"

namespace lumbrine {
namespace {

using TrackList = TrackMetadata::TrackList;

TrackList listOf(std::size_t count) {
    TrackList tracks(count);
    for (std::size_t i = 0; i < count; ++i)
        tracks[i].name = "Track " + std::to_string(i + 1);
    return tracks;
}

class TrackAdoptionTest : public MetadataTest {
protected:
    TrackMetadata& adoption = bench.parts().metadata;
    ReceiverState& state = bench.state();
};

class JapaneseTrackAdoptionTest : public JapaneseMetadataTest {};

TEST_F(TrackAdoptionTest, TakesTheFirstListWithAsManyTracksAsTheMap) {
    bench.setTrackMap({"Tra1", "Tra2", "Tra3"}, 0);
    adoption.adopt({listOf(2), listOf(3)}, "PTSL");
    EXPECT_THAT(namesOf(published.session), ElementsAre("Track 1", "Track 2", "Track 3"));
    TrackList others = listOf(3);
    others[0].name = "Other";
    adoption.adopt({others, listOf(3)}, "PTSL");
    EXPECT_EQ(namesOf(published.session)[0], "Other");
}

TEST_F(TrackAdoptionTest, TakesAListWithHiddenTracksOnlyWhereEveryDisplayMayBeOfItsName) {
    bench.setTrackMap({"Tra1", "Tra3", "Tra3"}, 0);
    adoption.adopt({listOf(2), listOf(3)}, "PTSL");
    EXPECT_THAT(namesOf(published.session), IsEmpty());
    EXPECT_THAT(bench.lines, ElementsAre("Full names: count mismatch (2, 3 / HUI 3) → keeping 4-char names"));
}

TEST_F(TrackAdoptionTest, ExpectsTheNewNameOfATrackThatWasRenamedBeforeTheFirstList) {
    bench.setTrackMap({"Tra1", "Old", "Tra3", "Tra4", "Tra5", "Tra6", "Tra7", "Tra8"}, 0);
    adoption.adopt({listOf(8)}, "PTSL");
    BankMap& map = bench.parts().bankMap;
    for (const std::string display : {"Old", "Tra2"}) { // which may come before the list, or behind it
        for (std::size_t strip = 0; strip < 8; ++strip)
            state.published.strips[strip].name = strip == 1 ? display : published.session.tracks[strip].display;
        map.relocalize();
        EXPECT_EQ(published.bankOffset, 0) << display;
    }
    EXPECT_EQ(published.session.tracks[1].display, "Tra2");
}

TEST_F(TrackAdoptionTest, ForgetsWhatTheSurfacesShowedOfATrackThatIsElsewhereNow) {
    adoption.adopt({listOf(3)}, "PTSL");
    for (Track& track : published.session.tracks) {
        track.fader = 0.5;
        track.mode = 1;
    }
    TrackList others = listOf(3);
    others[0].name = "Other";
    adoption.adopt({others}, "PTSL");
    EXPECT_EQ(published.session.tracks[0].fader, std::nullopt);
    EXPECT_EQ(published.session.tracks[0].mode, autoModeUnknown);
    EXPECT_EQ(published.session.tracks[1].fader, 0.5);
}

TEST_F(TrackAdoptionTest, KeepsTheShortNamesWhenNoListHasTheRightCount) {
    bench.setTrackMap(Lines(12, "Trck"), 0);
    adoption.adopt({listOf(11), listOf(13)}, "PTSL");
    EXPECT_THAT(namesOf(published.session), IsEmpty());
    EXPECT_FALSE(published.session.listed);
    EXPECT_FALSE(state.fullTableDirty);
    EXPECT_THAT(bench.lines, ElementsAre("Full names: count mismatch (11, 13 / HUI 12) → keeping 4-char names"));
}

TEST_F(JapaneseTrackAdoptionTest, LogsTheMismatchInJapanese) {
    bench.parts().metadata.adopt({listOf(4)}, "AX");
    EXPECT_THAT(bench.lines, ElementsAre("フルネーム: 件数不一致（4 / HUI 3）→ 4文字表示のまま"));
}

TEST_F(TrackAdoptionTest, LogsTheSameMismatchOnceAMinute) {
    const std::string mismatch = "Full names: count mismatch (4, 4 / HUI 3) → keeping 4-char names";
    adoption.adopt({listOf(4), listOf(4)}, "PTSL");
    bench.run(59'999ms);
    adoption.adopt({listOf(4), listOf(4)}, "PTSL");
    EXPECT_THAT(bench.takeLines(), ElementsAre(mismatch));
    bench.run(1ms);
    adoption.adopt({listOf(4), listOf(4)}, "PTSL");
    EXPECT_THAT(bench.takeLines(), ElementsAre(mismatch));
    adoption.adopt({listOf(5), listOf(6)}, "PTSL");
    EXPECT_EQ(bench.takeLines().size(), 1U);
}

TEST_F(TrackAdoptionTest, KeepsWhatItHadWhenTheCountsDifferLater) {
    adoption.adopt({listOf(3)}, "PTSL");
    adoption.adopt({listOf(2)}, "PTSL");
    EXPECT_THAT(namesOf(published.session), ElementsAre("Track 1", "Track 2", "Track 3"));
}

TEST_F(TrackAdoptionTest, DoesNothingWithoutAMap) {
    bench.setTrackMap({}, -1);
    adoption.adopt({listOf(0), listOf(3)}, "PTSL");
    EXPECT_THAT(namesOf(published.session), IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(TrackAdoptionTest, LogsNewNamesAndTheirSourceOnly) {
    adoption.adopt({listOf(3)}, "PTSL");
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ Got 3 track names (full names via PTSL)"));
    adoption.adopt({listOf(3)}, "AX");
    EXPECT_THAT(bench.takeLines(), IsEmpty());
    TrackList renamed = listOf(3);
    renamed[2].name = "ボーカル";
    adoption.adopt({renamed}, "AX");
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ Got 3 track names (full names via AX)"));
}

TEST_F(JapaneseTrackAdoptionTest, LogsNewNamesInJapanese) {
    bench.parts().metadata.adopt({listOf(3)}, "PTSL");
    EXPECT_THAT(bench.lines, ElementsAre("✓ トラック名を 3 件取得（フルネーム表示・PTSL）"));
}

TEST_F(TrackAdoptionTest, TakesColoursAndStatesOfEachTrack) {
    TrackList tracks = listOf(3);
    tracks[0].color = 0x336699;
    tracks[0].isInputMonitoringOn = true;
    tracks[1].isMuted = true;
    tracks[2].isSoloed = true;
    tracks[0].isRecordEnabled = true;
    adoption.adopt({tracks}, "PTSL");
    EXPECT_THAT(column(published.session, &Track::color), ElementsAre(0x336699U, std::nullopt, std::nullopt));
    EXPECT_THAT(column(published.session, &Track::inputMonitor), ElementsAre(true, false, false));
    EXPECT_THAT(column(published.session, &Track::mute), ElementsAre(false, true, false));
    EXPECT_THAT(column(published.session, &Track::solo), ElementsAre(false, false, true));
    EXPECT_THAT(column(published.session, &Track::record), ElementsAre(true, false, false));
}

TEST_F(TrackAdoptionTest, HasTheTableSentAgainWhenAnythingChangedAndOnlyThen) {
    const TrackList before = listOf(3);
    const auto changes = std::to_array<void (*)(PTSLTrack&)>({
        [](PTSLTrack& track) { track.name = "New"; },
        [](PTSLTrack& track) { track.color = 0x336699; },
        [](PTSLTrack& track) { track.isInputMonitoringOn = true; },
        [](PTSLTrack& track) { track.isMuted = true; },
        [](PTSLTrack& track) { track.isSoloed = true; },
        [](PTSLTrack& track) { track.isRecordEnabled = true; },
    });
    for (const auto change : changes) {
        adoption.adopt({before}, "PTSL");
        state.fullTableDirty = false;
        adoption.adopt({before}, "PTSL");
        EXPECT_FALSE(state.fullTableDirty);
        TrackList after = before;
        change(after[1]);
        adoption.adopt({after}, "PTSL");
        EXPECT_TRUE(state.fullTableDirty);
    }
}

} // namespace
} // namespace lumbrine
