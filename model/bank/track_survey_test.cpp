#include "model/bank/track_survey.h"
#include "model/testing/session_columns.h"

#include <span>

namespace lumbrine {
namespace {

using testing::ElementsAre;
using Names = TrackNames;

constexpr std::size_t width = 4; // of the surfaces here

// The faders tell nothing: those of tracks are all at one place.
Session surveyed(const std::vector<Names>& windows, Names listed = {}) {
    TrackSurvey survey(width, std::move(listed));
    for (const Names& window : windows)
        survey.add({.names = window, .faders = {}});
    return survey.session();
}

Names displays(const Session& session) {
    return displaysOf(session);
}

TEST(TrackSurvey, JoinsTheLastBankWhereTwoOrMoreTracksOverlap) {
    EXPECT_EQ(displays(surveyed({{"A", "B", "C", "D"}, {"C", "D", "E", "F"}})), (Names{"A", "B", "C", "D", "E", "F"}));
    EXPECT_EQ(displays(surveyed({{"A", "B", "C", "D"}, {"E", "", "", ""}})), (Names{"A", "B", "C", "D", "E"}));
}

TEST(TrackSurvey, KeepsTwoTracksOfOneNameThatMeetBetweenBanks) {
    EXPECT_EQ(displays(surveyed({{"A", "B", "C", "X"}, {"X", "D", "E", "F"}, {"G", "", "", ""}})),
              (Names{"A", "B", "C", "X", "X", "D", "E", "F", "G"}));
}

TEST(TrackSurvey, KeepsTheBlankEndOfABankThatIsNotTheLast) {
    EXPECT_EQ(displays(surveyed({{"A", "B", "C", ""}, {"E", "F", "G", ""}})),
              (Names{"A", "B", "C", "", "E", "F", "G"}));
}

TEST(TrackSurvey, KnowsNoFaderOfABlankStripThatNoListAgreesWith) {
    TrackSurvey survey(width, {});
    survey.add({.names = {"A", "", "C", ""}, .faders = {0.1, 0.2, 0.3, 0.4}});
    survey.add({.names = {"E", "", "", ""}, .faders = {0.5, 0.6, 0.0, 0.0}});
    EXPECT_THAT(column(survey.session(), &Track::fader),
                ElementsAre(0.1, std::nullopt, 0.3, std::nullopt, 0.5, std::nullopt));
}

TEST(TrackSurvey, KeepsABlankTrackAtTheEndWhoseFaderShows) {
    TrackSurvey survey(width, {});
    survey.add({.names = {"A", "B", "C", "D"}, .faders = {0.5, 0.5, 0.5, 0.5}});
    survey.add({.names = {"E", "", "", ""}, .faders = {0.5, 0.5, 0.0, 0.0}});
    EXPECT_EQ(displays(survey.session()), (Names{"A", "B", "C", "D", "E", ""}));
    EXPECT_TRUE(survey.session().sure);
}

TEST(TrackSurvey, IsUnsureWhereNobodyKnowsWhereTheLastBankBegins) {
    const std::vector<Names> windows{{"A", "B", "C", "D"}, {"D", "E", "F", "G"}};
    EXPECT_FALSE(surveyed(windows).sure);
    TrackSurvey survey(width, {});
    for (const Names& window : windows)
        survey.add({.names = window, .faders = {}});
    survey.endsAfter(3);
    EXPECT_EQ(displays(survey.session()), (Names{"A", "B", "C", "D", "E", "F", "G"}));
    EXPECT_TRUE(survey.session().sure);
}

bool looksDisturbed(const std::vector<Names>& windows) {
    TrackSurvey survey(width, {});
    for (const Names& window : windows)
        survey.add({.names = window, .faders = {}});
    return survey.looksDisturbed();
}

TEST(TrackSurvey, LooksDisturbedWhereBanksCannotFollowEachOther) {
    const Names first{"A", "B", "C", "D"}, none(width);
    EXPECT_FALSE(looksDisturbed({first, {"E", "F", "G", "H"}, {"G", "H", "I", "J"}}));
    EXPECT_TRUE(looksDisturbed({first, none, {"E", "F", "G", "H"}})); // a session was closed, and another one opened
    EXPECT_TRUE(looksDisturbed({first, none}));
    EXPECT_TRUE(looksDisturbed({first, {"C", "D", "E", "F"}, {"G", "H", "I", "J"}})); // only the last one overlaps
    EXPECT_TRUE(looksDisturbed({{"B", "C", "D", "E"}, first}));                       // that way back
    EXPECT_TRUE(looksDisturbed({{"A", "Tch", "C", "D"}, first}));                     // a mode over a name
}

TEST(TrackSurvey, LooksDisturbedWhereTracksComeASecondTimeWithTheirFaders) {
    const auto surveyedWith = [](const std::vector<std::optional<double>>& faders) {
        TrackSurvey survey(width, {});
        survey.add({.names = {"A", "B", "C", "D"}, .faders = {0.1, 0.2, 0.3, 0.4}});
        survey.add({.names = {"E", "F", "G", "H"}, .faders = {0.5, 0.6, 0.7, 0.8}});
        survey.add({.names = {"B", "C", "D", "E"}, .faders = faders});
        return survey.looksDisturbed();
    };
    EXPECT_TRUE(surveyedWith({0.2, 0.3, 0.4, 0.5}));
    EXPECT_FALSE(surveyedWith({0.6, 0.7, 0.8, 0.9})); // other tracks of the same names
}

TEST(TrackSurvey, HasAsManyTracksAsTheListThatItAgreesWith) {
    EXPECT_EQ(displays(surveyed({{"", "", "", ""}, {"", "", "", ""}}, {"声", "声二", "歌", "鼓", "弦", "笛"})).size(),
              6U);
    EXPECT_EQ(displays(surveyed({{"A", "B", "C", "D"}, {"E", "", "", ""}}, {"A", "B", "C", "D", "E", "声"})),
              (Names{"A", "B", "C", "D", "E", ""}));
}

TEST(TrackSurvey, KeepsTwoTracksOfOneNameThatMeetWhereTheListHasBoth) {
    EXPECT_EQ(
        displays(surveyed({{"A", "B", "C", "X"}, {"X", "D", "E", "F"}}, {"A", "B", "C", "X1", "X2", "D", "E", "F"})),
        (Names{"A", "B", "C", "X", "X", "D", "E", "F"}));
}

TEST(TrackSurvey, GoesByTheSurfacesWhereTheListDisagrees) {
    const std::vector<Names> windows{{"A", "B", "C", "D"}, {"C", "D", "E", "F"}};
    const Names seen{"A", "B", "C", "D", "E", "F"};
    EXPECT_EQ(displays(surveyed(windows, {"A", "B", "C", "D", "E"})), seen);           // lags
    EXPECT_EQ(displays(surveyed(windows, {"A", "B", "C", "D", "X", "F"})), seen);      // of another session
    EXPECT_EQ(displays(surveyed(windows, {"A", "B", "C", "D", "E", "F", "G"})), seen); // with hidden tracks
}

TEST(TrackSurvey, ByTheListALostPressLeavesNoTrackOut) {
    EXPECT_EQ(displays(surveyed({{"A", "B", "C", "D"}, {"A", "B", "C", "D"}, {"E", "F", "", ""}},
                                {"A", "B", "C", "D", "E", "F"})),
              (Names{"A", "B", "C", "D", "E", "F"}));
}

TEST(TrackSurvey, TakesTheLastBankAsFilledWhereNamesOrFadersSaySo) {
    const Names listed{"声", "声", "声", "声", "声", "声"};
    const std::vector<Names> windows{{"", "", "", ""}, {"", "", "", ""}};
    TrackSurvey filled(width, listed);
    filled.add({.names = windows[0], .faders = {0.1, 0.2, 0.3, 0.4}});
    filled.add({.names = windows[1], .faders = {0.3, 0.4, 0.5, 0.6}});
    EXPECT_THAT(column(filled.session(), &Track::fader), ElementsAre(0.1, 0.2, 0.3, 0.4, 0.5, 0.6));

    TrackSurvey unfilled(width, listed);
    unfilled.add({.names = windows[0], .faders = {0.1, 0.2, 0.3, 0.4}});
    unfilled.add({.names = windows[1], .faders = {0.5, 0.6, 0.0, 0.0}});
    EXPECT_THAT(column(unfilled.session(), &Track::fader), ElementsAre(0.1, 0.2, 0.3, 0.4, 0.5, 0.6));
}

TEST(SurveyedBank, IsUniformWhereEachStripShowsTheSame) {
    EXPECT_TRUE((SurveyedBank{.names = {"Vox", "Vox", "Vox"}, .faders = {0.5, 0.5, 0.5}}.isUniform()));
    EXPECT_FALSE((SurveyedBank{.names = {"Kick", "Vox", "Vox"}, .faders = {0.5, 0.5, 0.5}}.isUniform()));
    EXPECT_FALSE((SurveyedBank{.names = {"Vox", "Vox", "Vox"}, .faders = {0.5, 0.5, 0.4}}.isUniform()));
    EXPECT_FALSE((SurveyedBank{.names = {"Vox", "Kick"}, .faders = {0.5, 0.5}}.isUniform()));
    EXPECT_FALSE((SurveyedBank{.names = {"", ""}, .faders = {0.0, 0.0}}.isUniform()));
}

TEST(TrackSurvey, ExpectsAnotherBankWhileTheListThatAgreesHasOne) {
    TrackSurvey survey(width, {"声", "声", "声", "声", "声"});
    const SurveyedBank bank{.names = {"", "", "", ""}, .faders = {0.0, 0.0, 0.0, 0.0}};
    survey.add(bank);
    EXPECT_TRUE(survey.expectsAnother());
    survey.add(bank);
    EXPECT_FALSE(survey.expectsAnother());
}

TEST(TrackSurvey, ExpectsNothingByAListThatDisagrees) {
    TrackSurvey survey(width, {"Kick", "声", "声", "声", "声"});
    survey.add({.names = {"", "", "", ""}, .faders = {0.0, 0.0, 0.0, 0.0}});
    EXPECT_FALSE(survey.expectsAnother());
}

} // namespace
} // namespace lumbrine
