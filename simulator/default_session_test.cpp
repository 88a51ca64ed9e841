#include "simulator/default_session.h"

#include <algorithm>
#include <set>

namespace lumbrine {
namespace {

bool isASCII(const std::string& text) {
    return std::ranges::all_of(text, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

TEST(DefaultSession, HasAsManyTracksAsAskedForWithinAThousand) {
    EXPECT_EQ(defaultSession(0, 1).tracks().size(), 0u);
    EXPECT_EQ(defaultSession(-5, 1).tracks().size(), 0u);
    EXPECT_EQ(defaultSession(3, 1).tracks().size(), 3u);
    EXPECT_EQ(defaultSession(1000, 1).tracks().size(), 1000u);
    EXPECT_EQ(defaultSession(5000, 1).tracks().size(), 1000u);
}

TEST(DefaultSession, IsTheSameForTheSameSeedAndAnotherForAnother) {
    EXPECT_EQ(defaultSession(200, 7).tracks(), defaultSession(200, 7).tracks());
    EXPECT_NE(defaultSession(200, 7).tracks(), defaultSession(200, 8).tracks());
}

TEST(DefaultSession, NamesNoTwoTracksAlike) {
    const SimulatedSession session = defaultSession(1000, 1);
    std::set<std::string> names;
    for (const SimulatedTrack& track : session.tracks())
        EXPECT_TRUE(names.insert(track.name).second) << track.name;
}

TEST(DefaultSession, LooksLikeAMix) {
    const SimulatedSession session = defaultSession(64, 1);
    const auto count = [&](auto predicate) { return std::ranges::count_if(session.tracks(), predicate); };
    EXPECT_EQ(session.tracks()[0].name, "Kick In");
    EXPECT_GE(count([](const auto& track) { return !isASCII(track.name); }), 4);
    EXPECT_GE(count([](const auto& track) { return track.stereo; }), 10);
    EXPECT_GE(count([](const auto& track) { return track.hidden; }), 1);
    EXPECT_LE(count([](const auto& track) { return track.hidden; }), 12);
    EXPECT_GE(count([](const auto& track) { return !track.comment.empty(); }), 5);
    EXPECT_GE(count([](const auto& track) { return track.group != 0; }), 10);
    EXPECT_GE(count([](const auto& track) { return track.automation != SimulatedTrack::Automation::read; }), 10);
}

TEST(DefaultSession, HidesNothingWhileAllFitsOneSurface) {
    for (std::uint64_t seed = 1; seed < 50; ++seed)
        EXPECT_EQ(defaultSession(8, seed).shownTracks().size(), 8u);
}

TEST(DefaultSession, NamesAllTracksInJapaneseWhereThatIsAskedFor) {
    const SimulatedSession session = defaultSession(1000, 1, {.japaneseNames = true});
    std::set<std::string> names;
    for (const SimulatedTrack& track : session.tracks()) {
        EXPECT_FALSE(isASCII(track.name)) << track.name;
        EXPECT_TRUE(names.insert(track.name).second) << track.name;
    }
}

TEST(DefaultSession, PutsThreeTracksIntoEachFolderAndClosesEverySecondOne) {
    const SimulatedSession session = defaultSession(8, 1, {.folders = 5});
    const auto& tracks = session.tracks();
    EXPECT_EQ(tracks[0].name, "Folder 1");
    EXPECT_TRUE(tracks[0].isFolder && tracks[0].closed);
    EXPECT_TRUE(tracks[4].isFolder && !tracks[4].closed);
    EXPECT_EQ(tracks[3].folder, tracks[0].id);
    EXPECT_EQ(tracks[5].folder, tracks[4].id);
    EXPECT_EQ(session.shownTracks(), (std::vector{1, 5, 6, 7, 8})); // there was no room for more folders
}

TEST(DefaultSession, HasSiblingsOfTheSameTemplate) {
    const SimulatedSession first = defaultSession(40, 1, {.folders = 2});
    const SimulatedSession second = sessionOfSameTemplate(first, 2);
    ASSERT_EQ(second.tracks().size(), first.tracks().size());
    EXPECT_NE(second.name(), first.name());
    int differentFaders = 0;
    for (std::size_t i = 0; i < first.tracks().size(); ++i) {
        EXPECT_EQ(second.tracks()[i].name, first.tracks()[i].name);
        EXPECT_EQ(second.tracks()[i].folder, first.tracks()[i].folder);
        if (second.tracks()[i].fader != first.tracks()[i].fader) ++differentFaders;
    }
    EXPECT_GT(differentFaders, 30);
}

} // namespace
} // namespace lumbrine
