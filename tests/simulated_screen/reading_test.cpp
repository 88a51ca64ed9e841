// Names, selection and comments, read from the simulated Pro Tools' screen.
#include "screen/pt_mix_comments.h"
#include "screen/pt_track_list.h"
#include "simulator/default_session.h"
#include "simulator/testing/screen_bench.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;
using Comments = std::map<std::string, std::string>;

class ReadingTest : public ScreenBench {
protected:
    void TearDown() override { EXPECT_EQ(screen().liveHandles(), 0); }

    Names shownNames() const {
        Names names;
        const SimulatedSession session = proTools->session();
        for (const int id : session.shownTracks())
            names.push_back(session.find(id)->name);
        return names;
    }

    Comments shownComments() const {
        Comments comments;
        const SimulatedSession session = proTools->session();
        for (const int id : session.shownTracks())
            comments[session.find(id)->name] = session.find(id)->comment;
        return comments;
    }

    std::expected<Snapshot, NoReading> readNames() { return PTTrackList::read(screen(), runtime); }
    std::expected<Comments, NoReading> readComments(const Names& known) {
        return PTMixComments::read(screen(), runtime, known);
    }
};

TEST_F(ReadingTest, FindsTheNamesOfASession) {
    for (const bool japanese : {false, true})
        for (const NameNumbers numbers : {NameNumbers::none, NameNumbers::fullStop, NameNumbers::ideographic}) {
            start({.japanese = japanese, .numbers = numbers}, defaultSession(300, 1, {.japaneseNames = japanese}));
            const auto snapshot = readNames();
            ASSERT_TRUE(snapshot);
            EXPECT_EQ(snapshot->names, shownNames());
            EXPECT_EQ(snapshot->selectedIndex, std::nullopt);
        }
}

TEST_F(ReadingTest, FindsTheSelectedTrack) {
    start();
    proTools->edit([](SimulatedSession& session) { session.select(3, false); });
    const auto snapshot = readNames();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->selectedIndex, 2);
}

TEST_F(ReadingTest, FindsTheCommentsOfASession) {
    for (const bool japanese : {false, true}) {
        start({.japanese = japanese}, defaultSession(300, 1, {.japaneseNames = japanese}));
        EXPECT_EQ(readComments(shownNames()), shownComments());
    }
}

TEST_F(ReadingTest, FindsTheCommentsOfTheStripsInSight) {
    start({.mixStrips = 2});
    proTools->edit([](SimulatedSession& session) {
        session.changeAll([](SimulatedTrack& track) { track.comment = "of " + track.name; });
    });
    EXPECT_EQ(readComments(shownNames()), (Comments{{"T01", "of T01"}, {"T02", "of T02"}}));
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) { shown.scrollMix(2); });
    EXPECT_EQ(readComments(shownNames()), (Comments{{"T03", "of T03"}}));
    proTools->edit([](SimulatedSession& session) { session.setHidden(3, true); });
    EXPECT_FALSE(readComments({"T01", "T02", "T03"}));
}

TEST_F(ReadingTest, FindsNothingInClosedWindows) {
    start();
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) { shown.showWindows(false, false); });
    EXPECT_FALSE(readNames());
    EXPECT_FALSE(readComments({"T01"}));
    proTools->rest();
    proTools->edit([](SimulatedSession& session) { session.close(); });
    EXPECT_FALSE(readNames());
    EXPECT_FALSE(readComments({"T01"}));
}

TEST_F(ReadingTest, FindsNothingWithoutPermissionOrProgram) {
    start({.trusted = false});
    EXPECT_FALSE(readNames());
    EXPECT_FALSE(readComments({"T01"}));
    EXPECT_EQ(screen().prompts(), 0);
    screen().setTrusted(true);
    screen().setRunning(false);
    EXPECT_FALSE(readNames());
    EXPECT_FALSE(readComments({"T01"}));
}

// Whatever happens in the middle, what is read is less, never something else.
TEST_F(ReadingTest, FindsOnlyTrueNamesWhenThePermissionIsWithdrawnAnywhere) {
    start({}, numberedSession(6));
    const Names all = shownNames();
    readNames();
    const std::uint64_t reads = screen().reads();
    ASSERT_GT(reads, 20U);
    for (std::uint64_t last = 1; last < reads; ++last) {
        const std::uint64_t end = screen().reads() + last;
        screen().setTrusted(true);
        screen().beforeRead([&](std::uint64_t number) { screen().setTrusted(number < end); });
        if (const auto snapshot = readNames()) {
            ASSERT_LE(snapshot->names.size(), all.size());
            EXPECT_TRUE(std::equal(snapshot->names.begin(), snapshot->names.end(), all.begin()));
        }
    }
}

TEST_F(ReadingTest, FindsNoForeignNamesOnAnUnreliableScreen) {
    start({.failOneIn = 7, .vanishOneIn = 11}, defaultSession(40, 1));
    const Names all = shownNames();
    const Comments comments = shownComments();
    int snapshots = 0;
    for (int round = 0; round < 200; ++round) {
        if (const auto snapshot = readNames()) {
            ++snapshots;
            for (const std::string& name : snapshot->names)
                EXPECT_NE(std::ranges::find(all, name), all.end()) << name;
        }
        const auto found = readComments(all);
        for (const auto& [name, comment] : found.value_or(Comments{}))
            EXPECT_TRUE(comment == comments.at(name) || comment.empty()) << name;
    }
    EXPECT_GT(snapshots, 20);
}

TEST_F(ReadingTest, ReadsImmenseWindowsInProportion) {
    std::vector<std::uint64_t> reads;
    for (const int furniture : {0, 10'000, 20'000}) {
        start({.furniture = furniture}, numberedSession(100));
        EXPECT_EQ(readNames().value().names.size(), 100U);
        EXPECT_EQ(readComments(shownNames()).value().size(), 100U);
        reads.push_back(screen().reads());
    }
    EXPECT_NEAR(static_cast<double>(reads[2] - reads[0]), 2.0 * static_cast<double>(reads[1] - reads[0]), 10);
}

TEST_F(ReadingTest, GoesWellWhileTheTracksChange) {
    start({}, numberedSession(60));
    screen().beforeRead([this](std::uint64_t number) {
        if (number % 5 == 0)
            proTools->edit([&](SimulatedSession& session) {
                const auto index = static_cast<std::size_t>(number * 7 % session.tracks().size());
                const int id = session.tracks()[index].id;
                if (number % 2 == 0 && session.tracks().size() > 30) {
                    session.remove(id);
                } else {
                    session.move(id, 0);
                }
            });
    });
    for (int round = 0; round < 5; ++round) {
        readNames();
        readComments(shownNames());
    }
    screen().beforeRead({});
    EXPECT_EQ(readNames().value().names, shownNames());
}

} // namespace
} // namespace lumbrine
