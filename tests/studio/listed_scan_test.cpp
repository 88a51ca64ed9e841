// The scan of sessions whose displays do not tell all, beside a track list of Pro Tools' scripting service.
#include "model/testing/session_columns.h"
#include "simulator/default_session.h"
#include "tests/studio/studio.h"

#include <chrono>
#include <iterator>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> shownNames(const SimulatedSession& session) {
    std::vector<std::string> names;
    for (const int id : session.shownTracks())
        names.push_back(session.find(id)->name);
    return names;
}

// The service has told the names before the scan begins.
void tellNames(Studio& studio, const std::vector<std::string>& names) {
    TrackMetadata::TrackList list;
    std::ranges::transform(names, std::back_inserter(list),
                           [](const std::string& name) { return PTSLTrack{.name = name}; });
    studio.parts().metadata.takeList(std::move(list));
}

std::vector<std::string> mappedNames(Studio& studio) {
    return namesOf(studio.shown().session);
}

// ---- The demo's session, with some Japanese names

class DefaultSessionWith : public testing::TestWithParam<std::tuple<ShortNameRule, NonASCIIRule, EndOfSession, int>> {};

TEST_P(DefaultSessionWith, IsMappedWhole) {
    const auto& [shortNames, nonASCII, endOfSession, surfaces] = GetParam();
    const SimulatedSession session = defaultSession(40, 1);
    const std::vector<std::string> names = shownNames(session);
    Studio studio(session,
                  {.surfaces = surfaces, .shortNames = shortNames, .nonASCII = nonASCII, .endOfSession = endOfSession});
    tellNames(studio, names);
    ASSERT_TRUE(studio.mapSession(60s));
    tellNames(studio, names);
    EXPECT_EQ(mappedNames(studio), names);
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

INSTANTIATE_TEST_SUITE_P(
    EveryDisplay, DefaultSessionWith,
    testing::Combine(testing::Values(ShortNameRule::cut, ShortNameRule::vowels, ShortNameRule::colliding),
                     testing::Values(NonASCIIRule::blank, NonASCIIRule::questionMark, NonASCIIRule::huiCharacters),
                     testing::Values(EndOfSession::fill, EndOfSession::blank), testing::Values(1, 2)));

// ---- Sessions that displays cannot tell apart

TEST(ListedScan, MapsATrackThatIsBlankAtTheEndOfABank) {
    std::vector<std::string> names = displayNames(32);
    names[7] = "ボーカル";
    Studio studio(tracksNamed(names), {.nonASCII = NonASCIIRule::blank});
    tellNames(studio, names);
    ASSERT_TRUE(studio.mapSession(30s));
    tellNames(studio, names);
    EXPECT_EQ(mappedNames(studio), names);
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

TEST(ListedScan, MapsASessionOfJapaneseNamesButCannotTellThePosition) {
    const std::vector<std::string> names(18, "ボーカル");
    for (const NonASCIIRule rule : {NonASCIIRule::blank, NonASCIIRule::questionMark}) {
        Studio studio(tracksNamed(names), {.nonASCII = rule});
        tellNames(studio, names);
        ASSERT_TRUE(studio.mapSession(30s));
        EXPECT_EQ(studio.shown().session.size(), 18U);
        EXPECT_EQ(studio.mapFaders(), studio.hostFaders());
        EXPECT_EQ(studio.shown().bankOffset, -1);
    }
}

TEST(ListedScan, MapsEqualNamesInTheMiddle) {
    std::vector<std::string> names = displayNames(32);
    std::fill(names.begin() + 8, names.begin() + 24, "Vox");
    Studio studio(tracksNamed(names));
    tellNames(studio, names);
    ASSERT_TRUE(studio.mapSession(30s));
    tellNames(studio, names);
    EXPECT_EQ(mappedNames(studio), names);
}

TEST(ListedScan, GoesByTheSurfacesWhereTheListIsOfAnotherSession) {
    Studio studio(tracksNamed(displayNames(20)));
    tellNames(studio, std::vector<std::string>(30, "Other"));
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(20));
    EXPECT_EQ(studio.shown().bankOffset, -1); // until another scan finds the same
    EXPECT_EQ(studio.hostOffset(), 0);
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().bankOffset == 0; }, 15s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(20));
    ASSERT_TRUE(studio.untilQuiet(5s));
    studio.run(60s);
    EXPECT_EQ(studio.logged("▶ Scanning all tracks… (PT's display will move briefly)"), 2);
}

// Four letters are enough for a list that has not been told of a change.
TEST(ListedScan, GoesByTheSurfacesWhereTheListLacksATrack) {
    std::vector<std::string> listed = displayNames(20);
    listed.erase(listed.begin() + 9);
    Studio studio(tracksNamed(displayNames(20)));
    tellNames(studio, listed);
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(20));
}

// ---- Without a list

TEST(UnlistedScan, GoesOnBehindABankThatEndsBlank) {
    std::vector<std::string> names = displayNames(32);
    names[7] = "ボーカル";
    Studio studio(tracksNamed(names), {.nonASCII = NonASCIIRule::blank});
    ASSERT_TRUE(studio.mapSession(30s));
    names[7] = "";
    EXPECT_EQ(displaysOf(studio.shown().session), names);
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

} // namespace
} // namespace lumbrine
