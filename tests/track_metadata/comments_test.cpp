// The comments of the Mix window: whose they are, when they are read, and how they reach the client.
#include "model/testing/session_columns.h"
#include "remote/testing/in_words.h"
#include "tests/track_metadata/metadata_test.h"
#include "tests/track_metadata/shown_windows.h"

namespace lumbrine {
namespace {

class CommentsTest : public MetadataTest {
protected:
    CommentsTest() { give({"Kick Drum", "Lead Vocals", "Backing Vocals"}); }
    void TearDown() override { EXPECT_EQ(bench.screen.liveHandles(), 0); }

    // The full names, as a track list would have brought them; it is followed by a read of the comments.
    void give(const std::vector<std::string>& names) {
        std::vector<PTSLTrack> tracks(names.size());
        for (std::size_t i = 0; i < names.size(); ++i)
            tracks[i].name = names[i];
        bench.parts().metadata.adopt({tracks}, "PTSL");
        world.runtime.runUntilIdle();
        state.fullTableDirty = false;
    }

    void read() {
        bench.parts().metadata.refreshComments();
        world.runtime.runUntilIdle();
    }

    Lines comments() { return column(state.published.session, &Track::comment); }

    ReceiverState& state = bench.state();
    ShownWindows windows{bench.screen};
};

TEST_F(CommentsTest, AreGivenToTheTracksByTheirFullNames) {
    windows.mix({{"Lead Vocals", "comp of takes 3, 5"}, {"Backing Vocals", ""}, {"Kick Drum", "D112"}});
    read();
    EXPECT_THAT(comments(), ElementsAre("D112", "comp of takes 3, 5", ""));
    EXPECT_TRUE(state.fullTableDirty);
}

TEST_F(CommentsTest, AreReadWhenTheNamesAreNew) {
    windows.mix({{"Kick", "D112"}});
    give({"Kick", "Snare", "Hat"});
    EXPECT_THAT(comments(), ElementsAre("D112", "", ""));
}

TEST_F(CommentsTest, HaveTheTableSentAgainOnlyWhenTheyHaveChanged) {
    windows.mix({{"Kick Drum", "D112"}});
    read();
    state.fullTableDirty = false;
    read();
    EXPECT_FALSE(state.fullTableDirty);
    windows.mix({{"Kick Drum", ""}});
    read();
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
    EXPECT_TRUE(state.fullTableDirty);
}

TEST_F(CommentsTest, OfStripsOutOfSightStayAsTheyWere) {
    windows.mix({{"Kick Drum", "D112"}, {"Lead Vocals", "U87"}});
    read();
    windows.mix({{"Lead Vocals", "U67"}});
    read();
    EXPECT_THAT(comments(), ElementsAre("D112", "U67", ""));
    windows.closeMix();
    read();
    EXPECT_THAT(comments(), ElementsAre("D112", "U67", ""));
}

TEST_F(CommentsTest, StayAsTheyWereWithoutPermission) {
    windows.mix({{"Kick Drum", "D112"}});
    read();
    windows.mix({{"Kick Drum", "other"}});
    bench.screen.setTrusted(false);
    read();
    EXPECT_THAT(comments(), ElementsAre("D112", "", ""));
    EXPECT_EQ(bench.screen.prompts(), 0);
}

TEST_F(CommentsTest, GoWhereTheirTracksGo) {
    windows.mix({{"Kick Drum", "D112"}, {"Lead Vocals", "U87"}});
    read();
    windows.closeMix();
    give({"Lead Vocals", "Backing Vocals", "Kick Drum"});
    EXPECT_THAT(comments(), ElementsAre("U87", "", "D112"));
}

TEST_F(CommentsTest, AreForgottenWithTheNames) {
    windows.mix({{"Kick Drum", "D112"}});
    read();
    windows.closeMix();
    give({"Bass", "Lead Vocals", "Backing Vocals"});
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
    give({"Kick Drum", "Lead Vocals", "Backing Vocals"});
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
}

TEST_F(CommentsTest, AreForgottenWhenTheSameNamesAreAnotherSessions) {
    const auto giveWithIDs = [this](const std::string& session) {
        std::vector<PTSLTrack> tracks(3);
        for (std::size_t i = 0; i < tracks.size(); ++i)
            tracks[i] = {.name = "Track " + std::to_string(i), .id = session + std::to_string(i)};
        bench.parts().metadata.adopt({tracks}, "PTSL");
        world.runtime.runUntilIdle();
    };
    giveWithIDs("first ");
    windows.mix({{"Track 1", "D112"}});
    read();
    EXPECT_THAT(comments(), ElementsAre("", "D112", ""));
    windows.closeMix();
    giveWithIDs("first ");
    EXPECT_THAT(comments(), ElementsAre("", "D112", ""));
    giveWithIDs("second ");
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
}

TEST_F(CommentsTest, AreGivenToNoneOfTwoTracksWithOneName) {
    windows.mix({{"Vox", "first"}, {"Vox", "second"}, {"Bass", "DI"}});
    give({"Vox", "Bass", "Vox"});
    EXPECT_THAT(comments(), ElementsAre("", "DI", ""));
}

TEST_F(CommentsTest, OfATrackWhoseNameAnotherTakesTooAreForgotten) {
    windows.mix({{"Kick Drum", "D112"}});
    read();
    windows.closeMix();
    give({"Kick Drum", "Kick Drum", "Backing Vocals"});
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
}

TEST_F(CommentsTest, OfAnotherSessionsTrackWithTheSameNameAreForgotten) {
    const auto list = [](const std::string& id) {
        const std::array names{"Kick Drum", "Lead Vocals", "Backing Vocals"};
        std::vector<PTSLTrack> tracks(names.size());
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            tracks[i].name = names[i];
            tracks[i].id = id + std::to_string(i);
        }
        return tracks;
    };
    windows.mix({{"Kick Drum", "D112"}, {"Lead Vocals", "U87"}});
    bench.parts().metadata.adopt({list("a")}, "PTSL");
    read();
    windows.mix({{"Lead Vocals", "C800"}});
    bench.parts().metadata.adopt({list("b")}, "PTSL");
    world.runtime.runUntilIdle();
    EXPECT_THAT(comments(), ElementsAre("", "C800", ""));
    EXPECT_TRUE(state.fullTableDirty);
}

TEST_F(CommentsTest, NeedTheExactName) {
    windows.mix({{"kick drum", "a"}, {" Lead Vocals", "b"}, {"Backing Vocals ", "c"}});
    read();
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
}

TEST_F(CommentsTest, AreNotLookedForByEmptyNames) {
    windows.mix({{"", "nobody's"}, {"Bass", "DI"}});
    give({"", "Bass", "Hat"});
    EXPECT_THAT(comments(), ElementsAre("", "DI", ""));
}

TEST_F(CommentsTest, AreNotReadWithoutFullNames) {
    bench.setTrackMap({"Kick", "LdVo", "BkVo"}, 0);
    windows.mix({{"Kick Drum", "D112"}});
    const std::uint64_t before = bench.screen.reads();
    read();
    EXPECT_EQ(bench.screen.reads(), before);
}

// The tracks change in the middle of a read: what has been found is not theirs for sure.
class ChangedInBetweenTest : public CommentsTest {
protected:
    void readWith(const std::function<void()>& change) {
        windows.mix({{"Kick Drum", "D112"}});
        bool changed = false;
        bench.screen.watchReads([&, change](const MemoryScreen::Read& seen) {
            if (seen.asksFor("AXTitle") && !std::exchange(changed, true)) world.runtime.syncMain(change);
            return true;
        });
        read();
        EXPECT_TRUE(changed);
        bench.screen.watchReads([](const MemoryScreen::Read&) { return true; });
    }
};

TEST_F(ChangedInBetweenTest, TheMap) {
    readWith([this] { setColumn(published.session, &Track::display, {"LdVo", "Kick", "BkVo"}); });
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
}

TEST_F(ChangedInBetweenTest, TheNames) {
    readWith([this] { setColumn(published.session, &Track::name, {"Lead Vocals", "Kick Drum", "Backing Vocals"}); });
    EXPECT_THAT(comments(), ElementsAre("", "", ""));
}

TEST_F(CommentsTest, AreReadByOneReadThatRunsAndOneThatWaits) {
    windows.mix({{"Kick Drum", "D112"}});
    std::size_t walks = 0;
    bench.screen.watchReads([&](const MemoryScreen::Read& seen) {
        EXPECT_FALSE(world.runtime.onMain());
        if (seen.asksFor("AXWindows")) ++walks;
        world.runtime.sleepFor(100ms);
        return true;
    });
    for (int i = 0; i < 10; ++i) {
        bench.parts().metadata.refreshComments();
        bench.run(10ms);
    }
    bench.run(1min);
    EXPECT_EQ(walks, 2U);
}

TEST_F(CommentsTest, OfAModelThatGoesAwayAreDropped) {
    windows.mix({{"Kick Drum", "D112"}});
    bench.screen.watchReads([this](const MemoryScreen::Read&) {
        world.runtime.sleepFor(100ms);
        return true;
    });
    bench.parts().metadata.refreshComments();
    bench.run(150ms);
    const auto gone = bench.model->lifetime();
    bench.model.reset();
    EXPECT_TRUE(world.runtime.runUntil([&gone] { return gone.expired(); }, 30s));
}

// ---- On the way to the client

class CommentedClientTest : public OwnedModelTest {
protected:
    CommentedClientTest() {
        bench.setTrackMap({"Kick"}, 0);
        service.answers[3] = [](const service::Request&) {
            return service::reply(R"({"track_list":[{"name":"Kick Drum"}]})");
        };
        windows.mix({{"Kick Drum", "D112"}});
    }
    void TearDown() override { EXPECT_EQ(bench.screen.liveHandles(), 0); }

    service::EnvelopeService service{bench.streams};
    ShownWindows windows{bench.screen};
};

TEST_F(CommentedClientTest, GetsThemWithTheTable) {
    bench.parts().metadata.refreshFullNames();
    bench.run(700ms);
    EXPECT_THAT(remote::inWords(heard(0x1B)),
                ElementsAre("600ms row 1 fader=unknown mute=off solo=off record=off color=none monitor=off select=off "
                            "name=Kick Drum comment=D112"));
}

TEST_F(CommentedClientTest, HasThemReadEveryTwelveSecondsButNotDuringAScan) {
    bench.surfaceA.pingEverySecond();
    const auto stay = world.runtime.repeatOnMain(1s, [this] { sendNothing(); });
    Lines reads;
    bench.screen.watchReads([&](const MemoryScreen::Read& seen) {
        const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(world.runtime.now() - bench.origin);
        if (seen.asksFor("AXWindows")) reads.push_back(std::to_string(time.count()) + " ms");
        return true;
    });
    bench.run(30s);
    EXPECT_THAT(reads, ElementsAre("600 ms", // with the first names
                                   "12200 ms", "24200 ms"));
    bench.state().published.banksUsedBy = BankUser::scan;
    bench.run(10s);
    bench.state().published.banksUsedBy.reset();
    bench.run(10s);
    EXPECT_THAT(reads, testing::ElementsAre(testing::_, testing::_, testing::_, "48200 ms"));
}

TEST_F(CommentedClientTest, HearsOfANewOneWithinTwelveSecondsAndNotWhileTheTransportRuns) {
    bench.surfaceA.pingEverySecond();
    const auto stay = world.runtime.repeatOnMain(1s, [this] { sendNothing(); });
    bench.run(14s);
    phone->tape.clear();
    windows.mix({{"Kick Drum", "U47"}});
    bench.surfaceA.led(0x0E, 4, true);
    bench.run(20s);
    EXPECT_THAT(heard(0x1B), IsEmpty());
    bench.surfaceA.led(0x0E, 4, false);
    bench.run(14s);
    EXPECT_THAT(heard(0x1B), ElementsAre(testing::EndsWith("09 4B 69 63 6B 20 44 72 75 6D 03 55 34 37")));
}

} // namespace
} // namespace lumbrine
