#include "base/blank_text.h"
#include "model/bank/track_window.h"

namespace lumbrine {
namespace {

using Names = TrackNames;

int locate(const Names& map, const Names& window) {
    return lumbrine::locate(Session::of(map).tracks, window);
}

TEST(TrackWindow, IsLocatedWhereItsNamesStand) {
    EXPECT_EQ(locate(Names{"A", "B", "C", "D", "E"}, Names{"B", "C"}), 1);
    EXPECT_EQ(locate(Names{"A", "B", "C", "D", "E"}, Names{"A", "B"}), 0);
    EXPECT_EQ(locate(Names{"A", "B", "C", "D", "E"}, Names{"D", "E"}), 3);
}

TEST(TrackWindow, IsNowhereWhenItsNamesDoNotStandTogether) {
    EXPECT_EQ(locate(Names{"A", "B", "C"}, Names{"A", "C"}), -1);
    EXPECT_EQ(locate(Names{"A", "B", "C"}, Names{"C", "D"}), -1);
    EXPECT_EQ(locate(Names{"A"}, Names{"A", "B"}), -1);
}

TEST(TrackWindow, IsNowhereWhenItFitsTwice) {
    EXPECT_EQ(locate(Names{"A", "B", "A", "B"}, Names{"A", "B"}), -1);
}

TEST(TrackWindow, MayRunPastTheEndOfTheMap) {
    EXPECT_EQ(locate(Names{"A", "B", "C"}, Names{"C", "", ""}), 2);
    EXPECT_EQ(locate(Names{"A"}, Names{"A", "", "", ""}), 0);
}

TEST(TrackWindow, IsNowhereWhenItIsBlank) {
    EXPECT_EQ(locate(Names{"A", "B"}, Names{"", ""}), -1);
    EXPECT_EQ(locate(Names{"A", " \t"}, Names{" \t"}), -1);
    EXPECT_EQ(locate(Names{}, Names{"", ""}), -1);
    EXPECT_EQ(locate(Names{"A"}, Names{}), -1);
}

// Against a search that tries every place by itself: all windows over maps of two names and a blank one.
TEST(TrackWindow, IsLocatedAmongNamesThatAreAlike) {
    const std::array<std::string, 3> alphabet{"A", "B", ""};
    const auto namesOf = [&alphabet](int code, std::size_t count) {
        Names names;
        for (; names.size() < count; code /= 3)
            names.push_back(alphabet[static_cast<std::size_t>(code % 3)]);
        return names;
    };
    const auto placesOf = [](Names map, const Names& window) {
        map.resize(map.size() + window.size());
        std::vector<int> places;
        for (auto at = map.begin(); at != map.end() - static_cast<std::ptrdiff_t>(window.size()) + 1; ++at)
            if (std::equal(window.begin(), window.end(), at)) places.push_back(static_cast<int>(at - map.begin()));
        return places;
    };
    for (int mapCode = 0; mapCode < 729; ++mapCode)
        for (int windowCode = 1; windowCode < 81; ++windowCode) {
            const Names map = namesOf(mapCode, 6);
            const Names window = namesOf(windowCode, 4);
            if (std::ranges::all_of(window, &std::string::empty)) continue;
            const std::vector<int> places = placesOf(map, window);
            ASSERT_EQ(locate(map, window), places.size() == 1 ? places.front() : -1) << mapCode << " " << windowCode;
        }
}

TEST(TrackWindow, IsComparedExactly) {
    EXPECT_EQ(locate(Names{"Kick", "Snr"}, Names{"kick"}), -1);
    EXPECT_EQ(locate(Names{"Kick", "Snr"}, Names{"Kick "}), -1);
}

TEST(TrackWindow, IsFoundByTheOtherStripsWhereSomeShowAnAutomationMode) {
    const Names map{"Kick", "Snr", "Hat", "Tom", "Read", "Bass"};
    EXPECT_EQ(locate(map, Names{"Snr", "Tch", "Tom"}), 1);
    EXPECT_EQ(locate(map, Names{"Tch", "Read", "Tom"}), 1);
    EXPECT_EQ(locate(map, Names{"Tom", "Read", "Bass"}), 3); // which is a name
    EXPECT_EQ(locate(map, Names{"Tch", "Bass", ""}), 4);
    EXPECT_EQ(locate(map, Names{"Kick", "Trim", "Hat"}), 0);
    EXPECT_EQ(locate(map, Names{"Bass", "Tch", ""}), -1); // there is no track on that strip
    EXPECT_EQ(locate(map, Names{"Tch", "Ltch", ""}), -1);
    EXPECT_EQ(locate(map, Names{"Hat", "Tch", "Bass"}), -1);
    EXPECT_EQ(locate(Names{"Kick", "A", "Kick", "B"}, Names{"Kick", "Tch"}), -1);
}

TEST(TrackWindow, FitsSomewhereAlsoWhereItLiesAtSeveralPlaces) {
    const Session session = Session::of({"A", "B", "A", "B", "C"});
    EXPECT_TRUE(fitsSomewhere(session.tracks, Names{"A", "B"}));
    EXPECT_TRUE(fitsSomewhere(session.tracks, Names{"B", "C"}));
    EXPECT_TRUE(fitsSomewhere(session.tracks, Names{"", ""}));
    EXPECT_FALSE(fitsSomewhere(session.tracks, Names{"C", "A"}));
}

TEST(TrackWindow, TrimsSpacesAtBothEndsOfAName) {
    EXPECT_EQ(trimSpaces("  Gt r "), "Gt r");
    EXPECT_EQ(trimSpaces("    "), "");
    EXPECT_EQ(trimSpaces(""), "");
}

} // namespace
} // namespace lumbrine
