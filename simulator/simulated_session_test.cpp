#include "simulator/simulated_session.h"

namespace lumbrine {
namespace {

using Change = SessionChange::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

SimulatedSession threeTracks() {
    std::vector<SimulatedTrack> tracks(3);
    tracks[0].name = "Kick";
    tracks[1].name = "Snare";
    tracks[2].name = "Vox";
    return SimulatedSession("Mix", tracks);
}

std::vector<std::string> names(const SimulatedSession& session) {
    std::vector<std::string> list;
    for (const SimulatedTrack& track : session.tracks())
        list.push_back(track.name);
    return list;
}

struct ChangeLog {
    explicit ChangeLog(SimulatedSession& session) {
        session.onChange([this](const SessionChange& change) { kinds.push_back(change.kind); });
    }
    std::vector<Change> take() { return std::exchange(kinds, {}); }

    std::vector<Change> kinds;
};

TEST(SimulatedSession, GivesEachTrackAnIDThatIsNeverGivenAgain) {
    SimulatedSession session = threeTracks();
    EXPECT_TRUE(session.remove(3));
    EXPECT_EQ(session.add({}), 4);
    EXPECT_EQ(session.find(3), nullptr);
    EXPECT_EQ(session.find(0), nullptr);
    EXPECT_EQ(session.find(-1), nullptr);
    EXPECT_EQ(session.find(5), nullptr);
    EXPECT_EQ(session.find(2)->name, "Snare");
    EXPECT_EQ(session.findByName("Kick")->id, 1);
    EXPECT_EQ(session.findByName("kick"), nullptr);
}

TEST(SimulatedSession, AddsMovesAndRemovesTracksInOrder) {
    SimulatedSession session = threeTracks();
    SimulatedTrack bass;
    bass.name = "Bass";
    const int id = session.add(bass, 1);
    EXPECT_THAT(names(session), ElementsAre("Kick", "Bass", "Snare", "Vox"));
    EXPECT_TRUE(session.move(id, 3));
    EXPECT_THAT(names(session), ElementsAre("Kick", "Snare", "Vox", "Bass"));
    EXPECT_TRUE(session.move(id, 0));
    EXPECT_THAT(names(session), ElementsAre("Bass", "Kick", "Snare", "Vox"));
    EXPECT_TRUE(session.move(id, 99)); // as far as it goes
    EXPECT_THAT(names(session), ElementsAre("Kick", "Snare", "Vox", "Bass"));
    EXPECT_TRUE(session.remove(1));
    EXPECT_THAT(names(session), ElementsAre("Snare", "Vox", "Bass"));
    EXPECT_EQ(session.find(id)->name, "Bass");
}

TEST(SimulatedSession, LeavesHiddenTracksOutOfWhatIsShown) {
    SimulatedSession session = threeTracks();
    session.setHidden(2, true);
    EXPECT_THAT(session.shownTracks(), ElementsAre(1, 3));
    session.setHidden(2, false);
    EXPECT_THAT(session.shownTracks(), ElementsAre(1, 2, 3));
}

TEST(SimulatedSession, HidesWhatIsInAClosedOrHiddenFolder) {
    SimulatedSession session = threeTracks();
    session.change(1, [](SimulatedTrack& track) { track.isFolder = true; });
    session.change(2, [](SimulatedTrack& track) {
        track.isFolder = true;
        track.folder = 1;
    });
    session.change(3, [](SimulatedTrack& track) { track.folder = 2; });
    EXPECT_THAT(session.shownTracks(), ElementsAre(1, 2, 3));
    session.change(2, [](SimulatedTrack& track) { track.closed = true; });
    EXPECT_THAT(session.shownTracks(), ElementsAre(1, 2));
    EXPECT_TRUE(session.hiddenByFolder(*session.find(3)));
    session.change(2, [](SimulatedTrack& track) { track.closed = false; });
    session.setHidden(1, true);
    EXPECT_THAT(session.shownTracks(), IsEmpty());
    session.remove(1);
    EXPECT_THAT(session.shownTracks(), ElementsAre(2, 3));
}

TEST(SimulatedSession, HidesNothingInWhatIsNoFolder) {
    SimulatedSession session = threeTracks();
    session.change(1, [](SimulatedTrack& track) { track.closed = true; });
    session.change(2, [](SimulatedTrack& track) { track.folder = 1; });
    EXPECT_THAT(session.shownTracks(), ElementsAre(1, 2, 3));
}

TEST(SimulatedSession, BearsFoldersThatAreInEachOther) {
    SimulatedSession session = threeTracks();
    for (const int id : {1, 2})
        session.change(id, [id](SimulatedTrack& track) {
            track.isFolder = true;
            track.folder = 3 - id;
        });
    EXPECT_THAT(session.shownTracks(), ElementsAre(1, 2, 3));
    session.change(1, [](SimulatedTrack& track) { track.closed = true; });
    EXPECT_THAT(session.shownTracks(), ElementsAre(3));
}

TEST(SimulatedSession, AnnouncesFoldersAsStructure) {
    SimulatedSession session = threeTracks();
    ChangeLog log(session);
    session.change(1, [](SimulatedTrack& track) { track.isFolder = true; });
    session.change(2, [](SimulatedTrack& track) { track.folder = 1; });
    session.change(1, [](SimulatedTrack& track) { track.closed = true; });
    EXPECT_THAT(log.take(), ElementsAre(Change::structure, Change::structure, Change::structure));
    session.change(2, [](SimulatedTrack& track) { track.inactive = true; });
    EXPECT_THAT(log.take(), ElementsAre(Change::values));
}

TEST(SimulatedSession, AnnouncesEachChangeOnceAndByItsKind) {
    SimulatedSession session = threeTracks();
    ChangeLog log(session);
    session.change(1, [](SimulatedTrack& track) { track.mute = true; });
    EXPECT_THAT(log.take(), ElementsAre(Change::values));
    session.rename(1, "Kick In");
    EXPECT_THAT(log.take(), ElementsAre(Change::structure));
    session.change(1, [](SimulatedTrack& track) { track.automation = SimulatedTrack::Automation::touch; });
    EXPECT_THAT(log.take(), ElementsAre(Change::automation));
    session.change(1, [](SimulatedTrack& track) {
        track.trim = true;
        track.hidden = true;
        track.solo = true;
    });
    EXPECT_THAT(log.take(), ElementsAre(Change::structure, Change::automation, Change::values));
    session.play();
    session.close();
    session.open();
    EXPECT_THAT(log.take(), ElementsAre(Change::transport, Change::transport, Change::closed, Change::opened));
}

TEST(SimulatedSession, AnnouncesNothingWhenNothingComesOutDifferent) {
    SimulatedSession session = threeTracks();
    ChangeLog log(session);
    session.rename(1, "Kick");
    session.stop();
    session.open();
    session.locate(Duration::zero());
    EXPECT_FALSE(session.rename(7, "Nobody"));
    EXPECT_FALSE(session.remove(7));
    EXPECT_FALSE(session.move(7, 0));
    EXPECT_FALSE(session.select(7, false));
    EXPECT_TRUE(session.move(1, 0)); // where it is
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(SimulatedSession, KeepsTheIDWhateverAnEditDoesToIt) {
    SimulatedSession session = threeTracks();
    session.change(2, [](SimulatedTrack& track) { track.id = 1; });
    EXPECT_EQ(session.find(2)->name, "Snare");
}

TEST(SimulatedSession, SelectsOneTrackOrTogglesItInTheSelection) {
    SimulatedSession session = threeTracks();
    session.select(1, false);
    session.select(3, true);
    EXPECT_TRUE(session.find(1)->selected && session.find(3)->selected);
    session.select(3, true);
    EXPECT_FALSE(session.find(3)->selected);
    session.select(2, false);
    EXPECT_FALSE(session.find(1)->selected);
    EXPECT_TRUE(session.find(2)->selected);
}

TEST(SimulatedSession, SilencesEveryOtherTrackWhileOneIsSoloed) {
    SimulatedSession session = threeTracks();
    session.change(1, [](SimulatedTrack& track) { track.mute = true; });
    session.change(2, [](SimulatedTrack& track) { track.solo = true; });
    EXPECT_FALSE(session.impliedMute(*session.find(1))); // muted by somebody
    EXPECT_FALSE(session.impliedMute(*session.find(2)));
    EXPECT_TRUE(session.impliedMute(*session.find(3)));
    session.remove(2);
    EXPECT_FALSE(session.anySolo());
    EXPECT_FALSE(session.impliedMute(*session.find(3)));
}

TEST(SimulatedSession, CountsASoloOnceWhenNameAndSoloChangeTogether) {
    SimulatedSession session = threeTracks();
    session.change(1, [](SimulatedTrack& track) {
        track.name = "Kick In";
        track.solo = true;
    });
    session.change(1, [](SimulatedTrack& track) { track.solo = false; });
    EXPECT_FALSE(session.anySolo());
}

TEST(SimulatedSession, RecordsOncePlayFollowsRecord) {
    SimulatedSession session = threeTracks();
    session.record();
    EXPECT_TRUE(session.transport().recordReady);
    EXPECT_FALSE(session.transport().recording);
    session.play();
    EXPECT_TRUE(session.transport().recording);
    EXPECT_FALSE(session.transport().recordReady);
    session.record(); // punches out
    EXPECT_TRUE(session.transport().playing);
    EXPECT_FALSE(session.transport().recording);
    session.record(); // and in again
    session.stop();
    EXPECT_FALSE(session.transport().playing || session.transport().recording || session.transport().recordReady);
}

TEST(SimulatedSession, TakesRecordBackWhenItIsPressedTwiceWhileStopped) {
    SimulatedSession session = threeTracks();
    session.record();
    session.record();
    session.play();
    EXPECT_FALSE(session.transport().recording);
}

TEST(SimulatedSession, MovesOnOnlyWhileItPlays) {
    SimulatedSession session = threeTracks();
    session.elapse(seconds(1));
    EXPECT_EQ(session.transport().position, Duration::zero());
    session.play();
    session.elapse(seconds(1.5));
    EXPECT_EQ(session.transport().position, seconds(1.5));
    session.locate(-seconds(1));
    EXPECT_EQ(session.transport().position, Duration::zero());
}

TEST(SimulatedSession, ShowsNoTracksAndPlaysNothingWhileClosed) {
    SimulatedSession session = threeTracks();
    session.play();
    session.close();
    EXPECT_THAT(session.shownTracks(), IsEmpty());
    EXPECT_FALSE(session.transport().playing);
    session.play();
    session.record();
    EXPECT_FALSE(session.transport().playing || session.transport().recordReady);
    session.open();
    EXPECT_THAT(session.shownTracks(), ElementsAre(1, 2, 3));
}

TEST(SimulatedSession, CopiesWithoutItsListeners) {
    SimulatedSession session = threeTracks();
    ChangeLog log(session);
    SimulatedSession copy = session;
    copy.rename(1, "Other");
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(session.find(1)->name, "Kick");
}

TEST(SimulatedSession, IsExchangedForAnotherWithItsFoldersAndNewIds) {
    SimulatedSession session("First", std::vector<SimulatedTrack>(3));
    session.play();
    std::vector<SessionChange::Kind> changes;
    session.onChange([&](const SessionChange& change) { changes.push_back(change.kind); });

    std::vector<SimulatedTrack> tracks(2);
    tracks[0].isFolder = tracks[0].closed = true;
    tracks[1].folder = 1;
    session.exchange(SimulatedSession("Second", tracks));

    EXPECT_EQ(session.name(), "Second");
    EXPECT_TRUE(session.isOpen());
    EXPECT_FALSE(session.transport().playing);
    EXPECT_EQ(session.find(1), nullptr);
    EXPECT_THAT(session.shownTracks(), testing::ElementsAre(4)); // the folder hides the other
    EXPECT_TRUE(session.hiddenByFolder(*session.find(5)));
    EXPECT_THAT(changes, testing::ElementsAre(SessionChange::Kind::transport, SessionChange::Kind::closed,
                                              SessionChange::Kind::opened));
}

} // namespace
} // namespace lumbrine
